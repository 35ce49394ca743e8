// SPDX-License-Identifier: MIT
// Deck files: the public decks written back unchanged, edits confined to the edited slides, the
// XML that edits write, and LibreOffice opening what was written.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <csignal>

#include "decktestutil.h"
#include "minihost/slxcore/liveobjects.h"
#include "omhelpers.h"
#include "qtprinters.h"

using namespace omtest;
using minihost::Deck;

namespace {

QByteArray slideXml(const QByteArray& deck, int n) {
    return decktest::zipPart(deck, QStringLiteral("ppt/slides/slide%1.xml").arg(n));
}

std::unique_ptr<Deck> loadBytes(const QByteArray& bytes) {
    QString error;
    auto deck = Deck::load(bytes, QStringLiteral("memory.pptx"), &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

// The edit every public deck gets: readings after the first text of slide 1, and a new box.
void editFirstSlide(Deck& deck) {
    for (const minihost::ShapeInfo& shape : deck.shapes(1)) {
        if (shape.text.isEmpty()) continue;
        ComPtr<TextRange> all = wholeText(deck, shape.id);
        insertAfter(all.get(), QStringLiteral("（pīn yīn 𠮷）"));
        break;
    }
    ComPtr<Shapes> shapes;
    deck.view()->get_Shapes(shapes.put());
    ComPtr<IUnknown> made;
    shapes->AddTextbox(1, 400, 250, 96, 700, made.put());
    ComPtr<Shape> box = made.query<Shape>(slxoldapi::IID_Shape);
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> range;
    box->get_TextFrame(frame.put());
    frame->get_TextRange(range.put());
    putText(range.get(), QStringLiteral("hàn yǔ"));
    frame->put_AutoSize(1);
}

class PublicDeck : public ::testing::TestWithParam<QString> {
protected:
    void SetUp() override {
        path = decktest::testDeckDir() + QLatin1Char('/') + GetParam();
        if (!QFile::exists(path))
            GTEST_SKIP() << "public test deck not found: " << path.toStdString();
        original = decktest::readFile(path);
    }
    void TearDown() override { EXPECT_EQ(minihost::liveObjectCount(), 0); }
    QString path;
    QByteArray original;
};

TEST_P(PublicDeck, WrittenBackWithoutEditsIsByteIdentical) {
    auto deck = loadBytes(original);
    ASSERT_TRUE(deck);
    QString error;
    EXPECT_EQ(deck->toBytes(&error), original);
    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("copy.pptx"));
    ASSERT_TRUE(deck->save(copy, &error)) << error.toStdString();
    EXPECT_EQ(decktest::readFile(copy), original);
}

TEST_P(PublicDeck, AnEditChangesOnlyTheEditedSlideParts) {
    auto deck = loadBytes(original);
    ASSERT_TRUE(deck);
    editFirstSlide(*deck);
    QString error;
    const QByteArray edited = deck->toBytes(&error);
    ASSERT_FALSE(edited.isEmpty()) << error.toStdString();
    ASSERT_EQ(deck->editedParts().size(), 1);
    const QString editedPart = deck->editedParts().value(0);
    const auto before = decktest::zipEntries(original);
    const auto after = decktest::zipEntries(edited);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        SCOPED_TRACE(before[i].name.toStdString());
        EXPECT_EQ(after[i].name, before[i].name);  // order kept
        if (before[i].name == editedPart) {
            EXPECT_NE(after[i].data, before[i].data);
            continue;
        }
        EXPECT_EQ(after[i].crc, before[i].crc);
        EXPECT_EQ(after[i].compressedSize, before[i].compressedSize);
        EXPECT_EQ(after[i].method, before[i].method);
        EXPECT_EQ(after[i].data, before[i].data);
    }
    // The edited part is well-formed and holds the edit.
    auto reread = loadBytes(edited);
    ASSERT_TRUE(reread);
    bool found = false;
    for (const minihost::ShapeInfo& shape : reread->shapes(1))
        found = found || shape.text.contains(QStringLiteral("（pīn yīn 𠮷）"));
    EXPECT_TRUE(found);
    EXPECT_EQ(reread->shapes(1).last().text, QStringLiteral("hàn yǔ"));
    EXPECT_TRUE(reread->shapes(1).last().followsText);
    // Reading what was written and writing it again changes nothing.
    EXPECT_EQ(reread->toBytes(&error), edited);
}

TEST_P(PublicDeck, TextSurvivesTheRoundTripUnitForUnit) {
    auto deck = loadBytes(original);
    ASSERT_TRUE(deck);
    QString error;
    auto again = loadBytes(deck->toBytes(&error));
    for (int slide = 1; slide <= deck->slideCount(); ++slide) {
        const auto a = deck->shapes(slide), b = again->shapes(slide);
        ASSERT_EQ(a.size(), b.size());
        for (int i = 0; i < a.size(); ++i) EXPECT_EQ(a[i].text, b[i].text);
    }
}

INSTANTIATE_TEST_SUITE_P(Decks, PublicDeck,
                         ::testing::Values(QStringLiteral("poi-bug64693.pptx"),
                                           QStringLiteral("poi-with_japanese.pptx"),
                                           QStringLiteral("pypptx-test_slides.pptx"),
                                           QStringLiteral("pypptx-txt-font-props.pptx"),
                                           QStringLiteral("pypptx-txt-font-typeface.pptx"),
                                           QStringLiteral("pypptx-txt-text.pptx")),
                         [](const ::testing::TestParamInfo<QString>& info) {
                             QString name = info.param;
                             name.chop(5);
                             return name.replace(QLatin1Char('-'), QLatin1Char('_')).toStdString();
                         });

TEST(DeckFile, NewTextBoxIsWrittenWithFreshIdTextBoxFlagEmuBoxAndAutoFit) {
    auto deck = Deck::create(1);
    deck->addTextBox(1, QStringLiteral("一"), QRectF(0, 0, 100, 40));
    ComPtr<Shapes> shapes;
    deck->view()->get_Shapes(shapes.put());
    ComPtr<IUnknown> made;
    ASSERT_EQ(shapes->AddTextbox(1, 400, 250, 48, 700, made.put()), S_OK);
    ComPtr<Shape> box = made.query<Shape>(slxoldapi::IID_Shape);
    ComPtr<TextFrame> frame;
    box->get_TextFrame(frame.put());
    QString error;
    QByteArray xml = slideXml(deck->toBytes(&error), 1);
    EXPECT_TRUE(xml.contains("<p:cNvPr id=\"3\" name=\"TextBox 2\"/><p:cNvSpPr txBox=\"1\"/>"))
        << xml.toStdString();
    EXPECT_TRUE(
        xml.contains("<a:off x=\"5080000\" y=\"3175000\"/><a:ext cx=\"609600\" "
                     "cy=\"8890000\"/>"));
    EXPECT_FALSE(xml.contains("spAutoFit"));
    ASSERT_EQ(frame->put_AutoSize(1), S_OK);
    xml = slideXml(deck->toBytes(&error), 1);
    EXPECT_TRUE(xml.contains("<a:bodyPr wrap=\"square\" rtlCol=\"0\"><a:spAutoFit/></a:bodyPr>"))
        << xml.toStdString();
    // shapes, frame, and two references to the new box (made, box): released when they go.
    EXPECT_EQ(minihost::liveObjectCount(), 4);
}

TEST(DeckFile, FormatIsWrittenToRunPropertiesInSchemaOrder) {
    auto deck = Deck::create(1);
    const int id = deck->addTextBox(1, QStringLiteral("汉字"), QRectF(0, 0, 100, 40));
    {
        ComPtr<TextRange> all = wholeText(*deck, id);
        ComPtr<Font> f = font(all.get());
        BstrHolder name(QStringLiteral("Arial"));
        f->put_Name(name.get());  // a:latin first, the fill added afterwards goes before it
        ComPtr<ColorFormat> color;
        f->get_Color(color.put());
        color->put_RGB(0x0000C0);  // 0x00BBGGRR: red C0
        f->put_Size(20.0f);
        f->put_Bold(-1);
    }
    QString error;
    const QByteArray xml = slideXml(deck->toBytes(&error), 1);
    EXPECT_TRUE(
        xml.contains("<a:rPr lang=\"zh-CN\" sz=\"2000\" b=\"1\"><a:solidFill><a:srgbClr "
                     "val=\"C00000\"/></a:solidFill><a:latin typeface=\"Arial\"/></a:rPr>"
                     "<a:t>汉字</a:t>"))
        << xml.toStdString();
}

TEST(DeckFile, SplittingARunKeepsItsFormat) {
    const QString path = decktest::testDeckDir() + QStringLiteral("/pypptx-txt-font-props.pptx");
    if (!QFile::exists(path)) GTEST_SKIP() << "public test deck not found: " << path.toStdString();
    auto deck = loadBytes(decktest::readFile(path));
    deck->setCurrentSlide(3);
    const int boldOn = deck->shapes(3).first().id;
    ASSERT_EQ(deck->text(3, boldOn), QStringLiteral("Bold on"));
    {
        ComPtr<TextRange> all = wholeText(*deck, boldOn);
        ComPtr<TextRange> bo = characters(all.get(), 0, 2);
        ComPtr<TextRange> x = insertAfter(bo.get(), QStringLiteral("拼"));
        EXPECT_EQ(text(x.get()), QStringLiteral("拼"));
    }
    QString error;
    const QByteArray xml = slideXml(deck->toBytes(&error), 3);
    const int shapeStart = xml.indexOf("<p:sp>");
    const QByteArray first = xml.mid(shapeStart, xml.indexOf("</p:sp>") - shapeStart);
    EXPECT_EQ(first.count("<a:rPr lang=\"en-US\" b=\"1\" dirty=\"0\" smtClean=\"0\"/>"), 3)
        << first.toStdString();
    EXPECT_TRUE(first.contains("<a:t>Bo</a:t>"));
    EXPECT_TRUE(first.contains("<a:t>拼</a:t>"));
    EXPECT_TRUE(first.contains("<a:t>ld on</a:t>"));
    EXPECT_EQ(deck->shapes(3).first().text, QStringLiteral("Bo拼ld on"));
}

TEST(DeckFile, NewIdIsAboveEveryNumericIdOfThePart) {
    const QString path = decktest::testDeckDir() + QStringLiteral("/poi-bug64693.pptx");
    if (!QFile::exists(path)) GTEST_SKIP() << "public test deck not found: " << path.toStdString();
    auto deck = loadBytes(decktest::readFile(path));
    ComPtr<Shapes> shapes;
    deck->view()->get_Shapes(shapes.put());
    ComPtr<IUnknown> made;
    shapes->AddTextbox(1, 10, 10, 10, 10, made.put());
    int highest = 0;
    const auto all = deck->shapes(1);
    for (int i = 0; i + 1 < all.size(); ++i) highest = std::max(highest, all[i].id);
    EXPECT_GT(all.last().id, highest);
    EXPECT_EQ(all.last().name, QStringLiteral("TextBox %1").arg(all.last().id - 1));
}

TEST(DeckFile, ASlideReadAsUtf16IsWrittenAsUtf8AndSaysSo) {
    const decktest::Parts parts = decktest::blankParts();
    QByteArray slide = decktest::partOf(parts, QStringLiteral("ppt/slides/slide1.xml"));
    slide.replace("encoding=\"UTF-8\"", "encoding=\"UTF-16\"");
    const QString text = QString::fromUtf8(slide);
    QByteArray utf16("\xFF\xFE", 2);  // little-endian, with its byte order mark
    utf16.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    auto deck = loadBytes(decktest::makeZip(
        decktest::replaced(parts, QStringLiteral("ppt/slides/slide1.xml"), utf16)));
    ASSERT_TRUE(deck);
    deck->addTextBox(1, QStringLiteral("汉字"), QRectF(0, 0, 100, 40));
    QString error;
    const QByteArray written = deck->toBytes(&error);
    EXPECT_TRUE(slideXml(written, 1).startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\""))
        << slideXml(written, 1).left(80).toStdString();
    auto reread = loadBytes(written);
    ASSERT_TRUE(reread);
    EXPECT_EQ(reread->shapes(1).first().text, QStringLiteral("汉字"));
}

TEST(DeckFile, SavingReplacesTheTargetOnlyWhenComplete) {
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("out.pptx"));
    QFile existing(target);
    existing.open(QIODevice::WriteOnly);
    existing.write("old content");
    existing.close();
    auto deck = Deck::create(1);
    QString error;
    // A folder that does not exist: nothing is written anywhere, the error names the path.
    EXPECT_FALSE(deck->save(dir.filePath(QStringLiteral("missing/out.pptx")), &error));
    EXPECT_TRUE(error.startsWith(dir.filePath(QStringLiteral("missing/out.pptx")) +
                                 QStringLiteral(": cannot be written")))
        << error.toStdString();
    EXPECT_EQ(decktest::readFile(target), QByteArray("old content"));
    ASSERT_TRUE(deck->save(target, &error));
    EXPECT_TRUE(loadBytes(decktest::readFile(target)));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList({"out.pptx"}));
}

// Lets no file of this process grow past `bytes` while it lives: a write past the limit fails
// part way (EFBIG) as on a full disk, in the real writer, with no stand-in.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);  // the write fails instead of killing us
        rlimit limit = m_saved;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_saved{};
    void (*m_handler)(int) = nullptr;
};

TEST(DeckFile, ASaveThatFailsHalfWayLeavesTheTargetAsItWasAndNothingBehind) {
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("talk.pptx"));
    auto deck = Deck::create(3);
    std::uint32_t seed = 14;
    for (int slide = 1; slide <= 3; ++slide) {
        QString text;  // ideographs at random, so that the deck does not compress to nothing
        for (int i = 0; i < 2000; ++i) {
            seed = seed * 1103515245u + 12345u;
            text += QChar(static_cast<char16_t>(0x4E00 + (seed >> 16) % 0x5000));
        }
        deck->addTextBox(slide, text, QRectF(0, 0, 500, 300));
    }
    QString error;
    ASSERT_TRUE(deck->save(target, &error)) << error.toStdString();
    const QByteArray before = decktest::readFile(target);
    ASSERT_GT(before.size(), 8192);

    // The new version is larger than the limit: its writing stops a few kilobytes in.
    editFirstSlide(*deck);
    const QByteArray wanted = deck->toBytes(&error);
    ASSERT_GT(wanted.size(), 8192);
    bool saved = true;
    {
        const FileSizeLimit limit(4096);
        saved = deck->save(target, &error);
    }
    EXPECT_FALSE(saved);
    EXPECT_TRUE(error.startsWith(target + QStringLiteral(": cannot be written")))
        << error.toStdString();
    EXPECT_EQ(decktest::readFile(target), before);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System),
              QStringList({"talk.pptx"}));

    // Without the limit the same save goes through.
    ASSERT_TRUE(deck->save(target, &error)) << error.toStdString();
    EXPECT_EQ(decktest::readFile(target).size(), wanted.size());
    EXPECT_TRUE(loadBytes(decktest::readFile(target)));
}

TEST(DeckFile, LibreOfficeOpensEditedDecks) {
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty()) GTEST_SKIP() << "soffice not found: LibreOffice check skipped";
    QTemporaryDir dir;
    QStringList written;
    auto fresh = Deck::create(1);
    editFirstSlide(*fresh);
    QString error;
    ASSERT_TRUE(fresh->save(dir.filePath(QStringLiteral("new.pptx")), &error));
    written << dir.filePath(QStringLiteral("new.pptx"));
    for (const QString& name : decktest::testDeckNames()) {
        auto deck =
            loadBytes(decktest::readFile(decktest::testDeckDir() + QLatin1Char('/') + name));
        editFirstSlide(*deck);
        const QString out = dir.filePath(QStringLiteral("edited-") + name);
        ASSERT_TRUE(deck->save(out, &error)) << error.toStdString();
        written << out;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(soffice,
                  QStringList{QStringLiteral("--headless"),
                              QStringLiteral("-env:UserInstallation=file://") +
                                  dir.filePath(QStringLiteral("profile")),
                              QStringLiteral("--convert-to"), QStringLiteral("pdf"),
                              QStringLiteral("--outdir"), dir.filePath(QStringLiteral("pdf"))} +
                      written);
    ASSERT_TRUE(process.waitForFinished(300000)) << "soffice did not finish";
    EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
    for (const QString& deck : written) {
        const QString pdf = dir.filePath(QStringLiteral("pdf/")) +
                            QFileInfo(deck).completeBaseName() + QStringLiteral(".pdf");
        EXPECT_GT(QFileInfo(pdf).size(), 1000) << "no PDF for " << deck.toStdString();
    }
}

}  // namespace

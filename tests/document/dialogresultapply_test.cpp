// SPDX-License-Identifier: MIT
// The dialog-result writer over the stand-in object model, one test per row of the writing cases
// (tests/data/writing-cases.json, which the page's preview tests read too): the texts and bold
// runs the slide holds afterwards, the boxes made at their positions and widths as the call
// journal shows them, the calls that must and must not come, and the choices the model keeps.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <map>
#include <pugixml.hpp>
#include <vector>

#include "decktestutil.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "model/phoneticsymbolmodel.h"
#include "nvo/zapplication.h"

namespace {

// One box of the slide after writing: the selected text's box or a new one.
struct Box {
    QString kind;
    QString text;
    QStringList bold;
    int left = -1, top = -1, width = -1;  // new boxes only: as the add-on made them
};

struct WritingCase {
    QString name;
    QString text;
    QString selection;  // "text" (all of it), "cursor" (a cursor at its start) or "none"
    QVector<PhoneticItem> items;
    int styleType = 0;
    int bracketType = 0;
    std::vector<Box> written;
    QStringList calls;
    QStringList absent;
};

QStringList strings(const QJsonValue& value) {
    QStringList out;
    for (const QJsonValue& item : value.toArray()) out << item.toString();
    return out;
}

std::vector<WritingCase> loadCases() {
    QFile file(QStringLiteral(ZPHONETIC_WRITING_CASES));
    if (!file.open(QIODevice::ReadOnly)) return {};
    std::vector<WritingCase> cases;
    for (const QJsonValue& value : QJsonDocument::fromJson(file.readAll())["cases"].toArray()) {
        const QJsonObject row = value.toObject();
        WritingCase c;
        c.name = row["name"].toString();
        c.text = row["text"].toString();
        c.selection = row["selection"].toString();
        for (const QJsonValue& item : row["items"].toArray()) {
            const QJsonArray fields = item.toArray();
            c.items.append({fields[2].toString(), fields[1].toString(), fields[0].toInt()});
        }
        c.styleType = row["styleType"].toInt();
        c.bracketType = row["bracketType"].toInt();
        for (const QJsonValue& box : row["written"].toArray()) {
            const QJsonObject b = box.toObject();
            c.written.push_back({b["kind"].toString(), b["text"].toString(), strings(b["bold"]),
                                 b["left"].toInt(-1), b["top"].toInt(-1), b["width"].toInt(-1)});
        }
        c.calls = strings(row["calls"]);
        c.absent = strings(row["absent"]);
        cases.push_back(c);
    }
    return cases;
}

const std::vector<WritingCase>& writingCases() {
    static const std::vector<WritingCase> cases = loadCases();
    return cases;
}

// The bold stretches of every shape's text, by shape id, as the deck's file holds them.
std::map<int, QStringList> boldRuns(const minihost::Deck& deck) {
    QString error;
    const QByteArray slide =
        decktest::zipPart(deck.toBytes(&error), QStringLiteral("ppt/slides/slide1.xml"));
    pugi::xml_document document;
    document.load_buffer(slide.constData(), static_cast<size_t>(slide.size()));
    std::map<int, QStringList> runs;
    for (const pugi::xpath_node& found : document.select_nodes("//p:sp")) {
        const pugi::xml_node shape = found.node();
        const int id = shape.select_node("p:nvSpPr/p:cNvPr").node().attribute("id").as_int();
        QStringList& stretches = runs[id];
        bool inBold = false;
        for (const pugi::xpath_node& r : shape.select_nodes(".//a:r")) {
            const pugi::xml_attribute b = r.node().child("a:rPr").attribute("b");
            const bool bold = b.as_bool();
            const QString text = QString::fromUtf8(r.node().child("a:t").child_value());
            if (bold && inBold)
                stretches.last() += text;
            else if (bold)
                stretches << text;
            inBold = bold;
        }
    }
    return runs;
}

// The boxes the journal shows being made, with the width each was last given.
std::vector<Box> boxesMade(const QStringList& journal) {
    static const QRegularExpression added(
        QStringLiteral(R"(^Shapes\.AddTextbox\(1, (\d+), (\d+), (\d+), \d+\)$)"));
    static const QRegularExpression widened(QStringLiteral(R"(^Shape\.put_Width\((\d+)\)$)"));
    std::vector<Box> boxes;
    for (const QString& call : journal) {
        const QRegularExpressionMatch add = added.match(call);
        if (add.hasMatch()) {
            boxes.push_back({QStringLiteral("newBox"),
                             {},
                             {},
                             add.captured(1).toInt(),
                             add.captured(2).toInt(),
                             add.captured(3).toInt()});
        }
        const QRegularExpressionMatch widen = widened.match(call);
        if (widen.hasMatch() && !boxes.empty()) boxes.back().width = widen.captured(1).toInt();
    }
    return boxes;
}

// `expected` in this order within `journal`, other calls allowed between them.
::testing::AssertionResult callsInOrder(const QStringList& journal, const QStringList& expected) {
    int next = 0;
    for (const QString& call : journal) {
        if (next < expected.size() && call == expected[next]) ++next;
    }
    if (next == expected.size()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "missing, in order from: " << expected[next].toStdString() << "\njournal:\n"
           << journal.join('\n').toStdString();
}

class WritingCases : public ::testing::TestWithParam<size_t> {
protected:
    static ZxApplication* app() {
        return static_cast<ZxApplication*>(QCoreApplication::instance());
    }
    static ZPhoneticSymbolModel* model() { return ZPhoneticSymbolModel::instance(); }

    void SetUp() override {
        deck = minihost::Deck::create(1);
        minihost::setActiveView(deck->view());
        model()->coreApp = app()->coreApplication();
    }
    void TearDown() override {
        model()->coreApp = nullptr;
        model()->styleType = model()->bracketType = -1;
        minihost::setActiveView(nullptr);
        deck.reset();
        EXPECT_EQ(minihost::liveObjectCount(), 0)
            << minihost::liveObjectKinds().join(' ').toStdString();
    }

    std::unique_ptr<minihost::Deck> deck;
};

TEST(WritingCasesFile, IsReadAndHoldsTheCases) {
    EXPECT_GE(writingCases().size(), 16u) << "read from " ZPHONETIC_WRITING_CASES;
}

TEST_P(WritingCases, WritesWhatTheCaseSays) {
    const WritingCase& c = writingCases().at(GetParam());
    SCOPED_TRACE(c.name.toStdString());
    const int selected = deck->addTextBox(1, c.text, QRectF(100, 100, 300, 50));
    if (c.selection == QLatin1String("text")) {
        ASSERT_TRUE(deck->selectText(selected, 0, c.text.size()));
    } else if (c.selection == QLatin1String("cursor")) {
        ASSERT_TRUE(deck->selectText(selected, 0, 0));
    } else {
        ASSERT_EQ(c.selection, QLatin1String("none"));
    }
    deck->clearJournal();

    model()->applyPhoneticItems(c.items, c.styleType, c.bracketType);

    EXPECT_EQ(model()->styleType, c.styleType);
    EXPECT_EQ(model()->bracketType, c.bracketType);
    const QStringList journal = deck->journal();
    EXPECT_TRUE(callsInOrder(journal, c.calls));
    for (const QString& call : c.absent) {
        for (const QString& made : journal)
            EXPECT_FALSE(made.startsWith(call)) << made.toStdString();
    }

    // The slide's boxes in the case's terms: the selected text's box, and the new ones in the
    // order they were made, each with its position and width from the journal.
    const std::map<int, QStringList> bold = boldRuns(*deck);
    std::vector<Box> made = boxesMade(journal);
    std::vector<Box> newBoxes;
    Box selection;
    for (const minihost::ShapeInfo& shape : deck->shapes(1)) {
        const QStringList runs = bold.count(shape.id) ? bold.at(shape.id) : QStringList();
        if (shape.id == selected) {
            selection = {QStringLiteral("selection"), shape.text, runs};
        } else {
            Box box = newBoxes.size() < made.size() ? made[newBoxes.size()]
                                                    : Box{QStringLiteral("newBox"), {}, {}};
            box.text = shape.text;
            box.bold = runs;
            newBoxes.push_back(box);
        }
    }
    size_t nextNew = 0;
    for (const Box& expected : c.written) {
        const Box& actual = expected.kind == QLatin1String("selection")
                                ? selection
                                : (nextNew < newBoxes.size() ? newBoxes[nextNew++] : Box{});
        EXPECT_EQ(actual.kind, expected.kind);
        EXPECT_EQ(actual.text, expected.text) << expected.kind.toStdString();
        EXPECT_EQ(actual.bold, expected.bold) << expected.kind.toStdString();
        EXPECT_EQ(actual.left, expected.left);
        EXPECT_EQ(actual.top, expected.top);
        EXPECT_EQ(actual.width, expected.width);
    }
    EXPECT_EQ(nextNew, newBoxes.size()) << "boxes made that the case does not list";
}

INSTANTIATE_TEST_SUITE_P(Table, WritingCases, ::testing::Range<size_t>(0, writingCases().size()),
                         [](const ::testing::TestParamInfo<size_t>& info) {
                             return "row" + std::to_string(info.param + 1);
                         });

}  // namespace

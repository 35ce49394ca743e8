// SPDX-License-Identifier: MIT
#include "libreofficedecks.h"

#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>
#include <memory>

#include "decktestutil.h"

#ifdef ZPHONETIC_HAVE_POPPLER_QT5
#include <poppler/qt5/poppler-qt5.h>
#endif

namespace lotest {
namespace {

QByteArray xmlText(const QString& text) {
    return text.toHtmlEscaped().toUtf8();
}

}  // namespace

// A paragraph of runs at `size` points; "\v" in `text` becomes a line break.
QByteArray paragraph(const QString& text, int size, const QByteArray& pPr,
                     const QByteArray& runAttributes, const QByteArray& fonts) {
    QByteArray runs;
    const QStringList parts = text.split(QChar('\v'));
    for (int i = 0; i < parts.size(); ++i) {
        const QByteArray rPr = "<a:rPr lang=\"zh-CN\" altLang=\"en-US\" sz=\"" +
                               QByteArray::number(size * 100) + "\" " + runAttributes + ">" +
                               fonts + "</a:rPr>";
        if (i > 0) runs += "<a:br>" + rPr + "</a:br>";
        if (!parts[i].isEmpty())
            runs += "<a:r>" + rPr + "<a:t>" + xmlText(parts[i]) + "</a:t></a:r>";
    }
    return "<a:p>" + pPr + runs + "<a:endParaRPr lang=\"zh-CN\" sz=\"" +
           QByteArray::number(size * 100) + "\"/></a:p>";
}

// A text box with id 2 at (x, y), w x h points.
QByteArray textBox(double x, double y, double w, double h, const QByteArray& paragraphs,
                   const QByteArray& bodyAttributes) {
    auto emu = [](double points) { return QByteArray::number(std::llround(points * 12700)); };
    return "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"TextBox 1\"/><p:cNvSpPr txBox=\"1\"/>"
           "<p:nvPr/></p:nvSpPr><p:spPr><a:xfrm><a:off x=\"" +
           emu(x) + "\" y=\"" + emu(y) + "\"/><a:ext cx=\"" + emu(w) + "\" cy=\"" + emu(h) +
           "\"/></a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom><a:noFill/></p:spPr>"
           "<p:txBody><a:bodyPr " +
           bodyAttributes + "/><a:lstStyle/>" + paragraphs + "</p:txBody></p:sp>";
}

const QByteArray kNotoFonts =
    "<a:latin typeface=\"Noto Sans\"/><a:ea typeface=\"Noto Sans CJK SC\"/>";

// A deck whose master gives body text 32 pt and whose one layout has a body placeholder at
// (80, 120), 800 x 300 points; its slide holds that placeholder with `text`, saying nothing of
// its size or place.
QByteArray placeholderDeck(const QString& text) {
    const QByteArray ns =
        " xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\" "
        "xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\"";
    const QByteArray tree =
        "<p:nvGrpSpPr><p:cNvPr id=\"1\" name=\"\"/><p:cNvGrpSpPr/><p:nvPr/>"
        "</p:nvGrpSpPr><p:grpSpPr/>";
    const QByteArray body =
        "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"Content Placeholder 1\"/>"
        "<p:cNvSpPr><a:spLocks noGrp=\"1\"/></p:cNvSpPr><p:nvPr><p:ph "
        "idx=\"1\"/></p:nvPr></p:nvSpPr><p:spPr><a:xfrm><a:off x=\"1016000\" "
        "y=\"1524000\"/><a:ext cx=\"10160000\" cy=\"3810000\"/></a:xfrm></p:spPr>"
        "<p:txBody><a:bodyPr/><a:lstStyle/><a:p><a:endParaRPr/></a:p>"
        "</p:txBody></p:sp>";
    const QByteArray level =
        "<a:lvl1pPr marL=\"0\" indent=\"0\" algn=\"l\"><a:lnSpc><a:spcPct "
        "val=\"100000\"/></a:lnSpc><a:spcBef><a:spcPts val=\"0\"/></a:spcBef>"
        "<a:buNone/><a:defRPr sz=\"3200\"><a:solidFill><a:schemeClr "
        "val=\"tx1\"/></a:solidFill><a:latin typeface=\"+mn-lt\"/><a:ea "
        "typeface=\"+mn-ea\"/></a:defRPr></a:lvl1pPr>";
    const QByteArray master =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?><p:sldMaster" + ns +
        "><p:cSld><p:spTree>" + tree + body +
        "</p:spTree></p:cSld><p:clrMap bg1=\"lt1\" tx1=\"dk1\" bg2=\"lt2\" tx2=\"dk2\" "
        "accent1=\"accent1\" accent2=\"accent2\" accent3=\"accent3\" accent4=\"accent4\" "
        "accent5=\"accent5\" accent6=\"accent6\" hlink=\"hlink\" folHlink=\"folHlink\"/>"
        "<p:sldLayoutIdLst><p:sldLayoutId id=\"2147483649\" r:id=\"rId1\"/></p:sldLayoutIdLst>"
        "<p:txStyles><p:titleStyle>" +
        level + "</p:titleStyle><p:bodyStyle>" + level + "</p:bodyStyle><p:otherStyle>" + level +
        "</p:otherStyle></p:txStyles></p:sldMaster>";
    const QByteArray layout =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?><p:sldLayout" + ns +
        " type=\"obj\"><p:cSld name=\"Title and Content\"><p:spTree>" + tree + body +
        "</p:spTree></p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sldLayout>";
    const QByteArray slideShape =
        "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"Content Placeholder 1\"/><p:cNvSpPr><a:spLocks "
        "noGrp=\"1\"/></p:cNvSpPr><p:nvPr><p:ph idx=\"1\"/></p:nvPr></p:nvSpPr><p:spPr/>"
        "<p:txBody><a:bodyPr/><a:lstStyle/><a:p><a:r><a:rPr lang=\"zh-CN\" altLang=\"en-US\"/>"
        "<a:t>" +
        xmlText(text) + "</a:t></a:r></a:p></p:txBody></p:sp>";
    decktest::Parts parts = decktest::blankParts();
    parts = decktest::replaced(parts, QStringLiteral("ppt/slideMasters/slideMaster1.xml"), master);
    parts = decktest::replaced(parts, QStringLiteral("ppt/slideLayouts/slideLayout1.xml"), layout);
    QByteArray slide = decktest::partOf(parts, QStringLiteral("ppt/slides/slide1.xml"));
    slide.replace("</p:grpSpPr></p:spTree>", "</p:grpSpPr>" + slideShape + "</p:spTree>");
    return decktest::makeZip(
        decktest::replaced(parts, QStringLiteral("ppt/slides/slide1.xml"), slide));
}

QString soffice() {
    return QStandardPaths::findExecutable(QStringLiteral("soffice"));
}

bool convertToPdf(const QString& program, const QStringList& files, const QString& outDir,
                  QString* output) {
    QProcess convert;
    convert.setProcessChannelMode(QProcess::MergedChannels);
    convert.start(program, QStringList{QStringLiteral("-env:UserInstallation=file://") + outDir +
                                           QStringLiteral("/profile"),
                                       QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                                       QStringLiteral("pdf"), QStringLiteral("--outdir"), outDir}
                               << files);
    const bool finished = convert.waitForFinished(300000);
    *output = QString::fromUtf8(convert.readAll());
    return finished;
}

#ifdef ZPHONETIC_HAVE_POPPLER_QT5

std::vector<Glyph> pdfGlyphs(const QString& path) {
    std::unique_ptr<Poppler::Document> document(Poppler::Document::load(path));
    if (!document || document->numPages() < 1) return {};
    std::unique_ptr<Poppler::Page> page(document->page(0));
    std::vector<Glyph> glyphs;
    int index = 0;
    for (Poppler::TextBox* word : page->textList()) {
        for (int i = 0; i < word->text().size(); ++i) {
            const QRectF box = word->charBoundingBox(i);
            glyphs.push_back({word->text()[i], box.left(), box.width(), box.height(),
                              box.top() + box.height() * 0.95 / 1.3, i == word->text().size() - 1,
                              index});
        }
        ++index;
        delete word;
    }
    return glyphs;
}

std::vector<std::vector<Glyph>> pdfLines(const QString& path) {
    std::vector<Glyph> glyphs = pdfGlyphs(path);
    // Lines: glyphs whose baselines agree, top to bottom, each left to right.
    std::sort(glyphs.begin(), glyphs.end(),
              [](const Glyph& a, const Glyph& b) { return a.baseline < b.baseline; });
    std::vector<std::vector<Glyph>> lines;
    for (const Glyph& g : glyphs) {
        if (lines.empty() || g.baseline - lines.back().front().baseline > 0.3 * g.height)
            lines.emplace_back();
        lines.back().push_back(g);
    }
    for (auto& line : lines)
        std::sort(line.begin(), line.end(),
                  [](const Glyph& a, const Glyph& b) { return a.left < b.left; });
    return lines;
}

#endif

}  // namespace lotest

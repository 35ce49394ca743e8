// SPDX-License-Identifier: MIT
// A new deck: the smallest package that presentation programs open (one master, one blank
// layout, a theme), with empty 960 x 540 point slides.
#include <string>

#include "minihost/slxcore/deckcore_p.h"

namespace minihost {
namespace {

const char kDecl[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
const char kNs[] =
    " xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\""
    " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\""
    " xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\"";
const char kRelType[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
const char kContentType[] = "application/vnd.openxmlformats-officedocument.";
const char kEmptyTree[] =
    "<p:spTree><p:nvGrpSpPr><p:cNvPr id=\"1\" name=\"\"/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr>"
    "<p:grpSpPr><a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"0\" cy=\"0\"/><a:chOff x=\"0\" "
    "y=\"0\"/>"
    "<a:chExt cx=\"0\" cy=\"0\"/></a:xfrm></p:grpSpPr></p:spTree>";

std::string relationships(const std::string& body) {
    return std::string(kDecl) +
           "<Relationships "
           "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" +
           body + "</Relationships>";
}

std::string relationship(int id, const char* type, const std::string& target) {
    return "<Relationship Id=\"rId" + std::to_string(id) + "\" Type=\"" + kRelType + type +
           "\" Target=\"" + target + "\"/>";
}

std::string override(const std::string& part, const char* type) {
    return "<Override PartName=\"" + part + "\" ContentType=\"" + kContentType + type + "\"/>";
}

std::string themePart() {
    std::string colors;
    const char* scheme[][2] = {
        {"dk1", "000000"},     {"lt1", "FFFFFF"},     {"dk2", "44546A"},
        {"lt2", "E7E6E6"},     {"accent1", "4472C4"}, {"accent2", "ED7D31"},
        {"accent3", "A5A5A5"}, {"accent4", "FFC000"}, {"accent5", "5B9BD5"},
        {"accent6", "70AD47"}, {"hlink", "0563C1"},   {"folHlink", "954F72"}};
    for (const auto& c : scheme)
        colors += std::string("<a:") + c[0] + "><a:srgbClr val=\"" + c[1] + "\"/></a:" + c[0] + ">";
    const std::string fill = "<a:solidFill><a:schemeClr val=\"phClr\"/></a:solidFill>";
    const std::string line = "<a:ln w=\"6350\">" + fill + "</a:ln>";
    const std::string effect = "<a:effectStyle><a:effectLst/></a:effectStyle>";
    const std::string font =
        "<a:latin typeface=\"Calibri\"/><a:ea typeface=\"\"/><a:cs typeface=\"\"/>";
    return std::string(kDecl) +
           "<a:theme xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
           "name=\"Office\"><a:themeElements><a:clrScheme name=\"Office\">" +
           colors + "</a:clrScheme><a:fontScheme name=\"Office\"><a:majorFont>" + font +
           "</a:majorFont><a:minorFont>" + font +
           "</a:minorFont></a:fontScheme><a:fmtScheme name=\"Office\"><a:fillStyleLst>" + fill +
           fill + fill + "</a:fillStyleLst><a:lnStyleLst>" + line + line + line +
           "</a:lnStyleLst><a:effectStyleLst>" + effect + effect + effect +
           "</a:effectStyleLst><a:bgFillStyleLst>" + fill + fill + fill +
           "</a:bgFillStyleLst></a:fmtScheme></a:themeElements></a:theme>";
}

}  // namespace

QByteArray DeckCore::blankDeckBytes(int slideCount) {
    std::vector<std::pair<std::string, QByteArray>> parts;
    auto add = [&](const std::string& name, const std::string& xml) {
        parts.emplace_back(name, QByteArray::fromStdString(xml));
    };
    std::string overrides =
        override("/ppt/presentation.xml", "presentationml.presentation.main+xml") +
        override("/ppt/slideMasters/slideMaster1.xml", "presentationml.slideMaster+xml") +
        override("/ppt/slideLayouts/slideLayout1.xml", "presentationml.slideLayout+xml") +
        override("/ppt/theme/theme1.xml", "theme+xml");
    std::string slideIds, slideRels;
    for (int i = 1; i <= slideCount; ++i) {
        const std::string n = std::to_string(i);
        overrides += override("/ppt/slides/slide" + n + ".xml", "presentationml.slide+xml");
        slideIds += "<p:sldId id=\"" + std::to_string(255 + i) + "\" r:id=\"rId" +
                    std::to_string(i + 2) + "\"/>";
        slideRels += relationship(i + 2, "slide", "slides/slide" + n + ".xml");
    }
    add("[Content_Types].xml",
        std::string(kDecl) +
            "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
            "<Default Extension=\"rels\" "
            "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
            "<Default Extension=\"xml\" ContentType=\"application/xml\"/>" +
            overrides + "</Types>");
    add("_rels/.rels", relationships(relationship(1, "officeDocument", "ppt/presentation.xml")));
    add("ppt/presentation.xml",
        std::string(kDecl) + "<p:presentation" + kNs +
            "><p:sldMasterIdLst><p:sldMasterId id=\"2147483648\" r:id=\"rId1\"/>"
            "</p:sldMasterIdLst><p:sldIdLst>" +
            slideIds +
            "</p:sldIdLst><p:sldSz cx=\"12192000\" cy=\"6858000\"/>"
            "<p:notesSz cx=\"6858000\" cy=\"9144000\"/><p:defaultTextStyle><a:lvl1pPr>"
            "<a:defRPr sz=\"1800\"><a:solidFill><a:schemeClr val=\"tx1\"/></a:solidFill>"
            "<a:latin typeface=\"+mn-lt\"/><a:ea typeface=\"+mn-ea\"/><a:cs typeface=\"+mn-cs\"/>"
            "</a:defRPr></a:lvl1pPr></p:defaultTextStyle></p:presentation>");
    add("ppt/_rels/presentation.xml.rels",
        relationships(relationship(1, "slideMaster", "slideMasters/slideMaster1.xml") +
                      relationship(2, "theme", "theme/theme1.xml") + slideRels));
    add("ppt/slideMasters/slideMaster1.xml",
        std::string(kDecl) + "<p:sldMaster" + kNs + "><p:cSld>" + kEmptyTree +
            "</p:cSld><p:clrMap bg1=\"lt1\" tx1=\"dk1\" bg2=\"lt2\" tx2=\"dk2\" "
            "accent1=\"accent1\" accent2=\"accent2\" accent3=\"accent3\" accent4=\"accent4\" "
            "accent5=\"accent5\" accent6=\"accent6\" hlink=\"hlink\" folHlink=\"folHlink\"/>"
            "<p:sldLayoutIdLst><p:sldLayoutId id=\"2147483649\" r:id=\"rId1\"/>"
            "</p:sldLayoutIdLst></p:sldMaster>");
    add("ppt/slideMasters/_rels/slideMaster1.xml.rels",
        relationships(relationship(1, "slideLayout", "../slideLayouts/slideLayout1.xml") +
                      relationship(2, "theme", "../theme/theme1.xml")));
    add("ppt/slideLayouts/slideLayout1.xml",
        std::string(kDecl) + "<p:sldLayout" + kNs + " type=\"blank\"><p:cSld name=\"Blank\">" +
            kEmptyTree + "</p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sldLayout>");
    add("ppt/slideLayouts/_rels/slideLayout1.xml.rels",
        relationships(relationship(1, "slideMaster", "../slideMasters/slideMaster1.xml")));
    add("ppt/theme/theme1.xml", themePart());
    for (int i = 1; i <= slideCount; ++i) {
        const std::string n = std::to_string(i);
        add("ppt/slides/slide" + n + ".xml",
            std::string(kDecl) + "<p:sld" + kNs + "><p:cSld>" + kEmptyTree +
                "</p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sld>");
        add("ppt/slides/_rels/slide" + n + ".xml.rels",
            relationships(relationship(1, "slideLayout", "../slideLayouts/slideLayout1.xml")));
    }
    return Package::build(parts);
}

}  // namespace minihost

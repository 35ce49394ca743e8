#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes examples/lesson.pptx: a small Chinese lesson deck for trying zphonetic.

The deck is made from scratch here (no template): three slides with a title and a text box of
Chinese text each, in the minimal package a presentation program opens. The zip entries carry a
fixed date so the file is the same byte for byte on every run.

    python3 examples/make-lesson-deck.py [OUT]
"""
import sys
import zipfile
from xml.sax.saxutils import escape

NS = ('xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" '
      'xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships" '
      'xmlns:p="http://schemas.openxmlformats.org/presentationml/2006/main"')
REL = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PKG_REL = "http://schemas.openxmlformats.org/package/2006/relationships"
EMU = 12700  # per point
DECL = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'

SLIDES = [
    ("静夜思", ["床前明月光，疑是地上霜。", "举头望明月，低头思故乡。"]),
    ("多音字", ["银行行长还是觉得音乐很快乐。", "他重新说了一遍：这很重要。"]),
    ("一和不的变调", ["一个人，一天，一年。", "不是不好，是不对。"]),
]


def rels(items):
    body = "".join(f'<Relationship Id="rId{i}" Type="{REL}/{kind}" Target="{target}"/>'
                   for i, (kind, target) in enumerate(items, 1))
    return f'{DECL}<Relationships xmlns="{PKG_REL}">{body}</Relationships>'


def run(text, size, bold=False):
    b = ' b="1"' if bold else ""
    return (f'<a:r><a:rPr lang="zh-CN" altLang="en-US" sz="{size * 100}"{b} dirty="0">'
            f'<a:solidFill><a:srgbClr val="1F3864"/></a:solidFill>'
            f'<a:latin typeface="Noto Sans"/><a:ea typeface="Noto Sans CJK SC"/></a:rPr>'
            f'<a:t>{escape(text)}</a:t></a:r>')


def textbox(shape_id, name, x, y, w, h, paragraphs, size, bold=False):
    paras = "".join(f'<a:p>{run(t, size, bold)}</a:p>' for t in paragraphs)
    return (f'<p:sp><p:nvSpPr><p:cNvPr id="{shape_id}" name="{name}"/><p:cNvSpPr txBox="1"/><p:nvPr/></p:nvSpPr>'
            f'<p:spPr><a:xfrm><a:off x="{x * EMU}" y="{y * EMU}"/><a:ext cx="{w * EMU}" cy="{h * EMU}"/></a:xfrm>'
            f'<a:prstGeom prst="rect"><a:avLst/></a:prstGeom><a:noFill/></p:spPr>'
            f'<p:txBody><a:bodyPr wrap="square" rtlCol="0"><a:spAutoFit/></a:bodyPr><a:lstStyle/>{paras}</p:txBody></p:sp>')


def slide(title, lines):
    tree = (textbox(2, "Title 1", 60, 40, 840, 60, [title], 36, bold=True)
            + textbox(3, "TextBox 2", 60, 140, 840, 200, lines, 28))
    return (f'{DECL}<p:sld {NS}><p:cSld><p:spTree><p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr>'
            f'<p:grpSpPr/>{tree}</p:spTree></p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sld>')


THEME = (f'{DECL}<a:theme xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" name="Lesson">'
         '<a:themeElements><a:clrScheme name="Lesson">'
         '<a:dk1><a:srgbClr val="000000"/></a:dk1><a:lt1><a:srgbClr val="FFFFFF"/></a:lt1>'
         '<a:dk2><a:srgbClr val="1F3864"/></a:dk2><a:lt2><a:srgbClr val="E7E6E6"/></a:lt2>'
         '<a:accent1><a:srgbClr val="4472C4"/></a:accent1><a:accent2><a:srgbClr val="ED7D31"/></a:accent2>'
         '<a:accent3><a:srgbClr val="A5A5A5"/></a:accent3><a:accent4><a:srgbClr val="FFC000"/></a:accent4>'
         '<a:accent5><a:srgbClr val="5B9BD5"/></a:accent5><a:accent6><a:srgbClr val="70AD47"/></a:accent6>'
         '<a:hlink><a:srgbClr val="0563C1"/></a:hlink><a:folHlink><a:srgbClr val="954F72"/></a:folHlink>'
         '</a:clrScheme><a:fontScheme name="Lesson">'
         '<a:majorFont><a:latin typeface="Noto Sans"/><a:ea typeface="Noto Sans CJK SC"/><a:cs typeface=""/></a:majorFont>'
         '<a:minorFont><a:latin typeface="Noto Sans"/><a:ea typeface="Noto Sans CJK SC"/><a:cs typeface=""/></a:minorFont>'
         '</a:fontScheme><a:fmtScheme name="Lesson"><a:fillStyleLst>'
         + '<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>' * 3 +
         '</a:fillStyleLst><a:lnStyleLst>'
         + '<a:ln w="6350"><a:solidFill><a:schemeClr val="phClr"/></a:solidFill></a:ln>' * 3 +
         '</a:lnStyleLst><a:effectStyleLst>' + '<a:effectStyle><a:effectLst/></a:effectStyle>' * 3 +
         '</a:effectStyleLst><a:bgFillStyleLst>' + '<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>' * 3 +
         '</a:bgFillStyleLst></a:fmtScheme></a:themeElements></a:theme>')

MASTER = (f'{DECL}<p:sldMaster {NS}><p:cSld><p:bg><p:bgPr><a:solidFill><a:srgbClr val="FFFDF5"/></a:solidFill><a:effectLst/></p:bgPr></p:bg>'
          '<p:spTree><p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/></p:spTree></p:cSld>'
          '<p:clrMap bg1="lt1" tx1="dk1" bg2="lt2" tx2="dk2" accent1="accent1" accent2="accent2" accent3="accent3" '
          'accent4="accent4" accent5="accent5" accent6="accent6" hlink="hlink" folHlink="folHlink"/>'
          '<p:sldLayoutIdLst><p:sldLayoutId id="2147483649" r:id="rId1"/></p:sldLayoutIdLst>'
          '<p:txStyles><p:titleStyle/><p:bodyStyle/><p:otherStyle/></p:txStyles></p:sldMaster>')

LAYOUT = (f'{DECL}<p:sldLayout {NS} type="blank" preserve="1"><p:cSld name="Blank"><p:spTree><p:nvGrpSpPr>'
          '<p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/></p:spTree></p:cSld>'
          '<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sldLayout>')


def presentation(count):
    ids = "".join(f'<p:sldId id="{256 + i}" r:id="rId{i + 2}"/>' for i in range(count))
    return (f'{DECL}<p:presentation {NS}><p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/></p:sldMasterIdLst>'
            f'<p:sldIdLst>{ids}</p:sldIdLst><p:sldSz cx="12192000" cy="6858000"/><p:notesSz cx="6858000" cy="9144000"/>'
            '<p:defaultTextStyle><a:lvl1pPr><a:defRPr sz="1800"/></a:lvl1pPr></p:defaultTextStyle></p:presentation>')


def content_types(count):
    ct = "application/vnd.openxmlformats-officedocument."
    over = "".join(f'<Override PartName="/ppt/slides/slide{i + 1}.xml" ContentType="{ct}presentationml.slide+xml"/>'
                   for i in range(count))
    return (f'{DECL}<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
            '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/>'
            f'<Override PartName="/ppt/presentation.xml" ContentType="{ct}presentationml.presentation.main+xml"/>'
            f'<Override PartName="/ppt/slideMasters/slideMaster1.xml" ContentType="{ct}presentationml.slideMaster+xml"/>'
            f'<Override PartName="/ppt/slideLayouts/slideLayout1.xml" ContentType="{ct}presentationml.slideLayout+xml"/>'
            f'<Override PartName="/ppt/theme/theme1.xml" ContentType="{ct}theme+xml"/>{over}</Types>')


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else "examples/lesson.pptx"
    n = len(SLIDES)
    parts = [
        ("[Content_Types].xml", content_types(n)),
        ("_rels/.rels", rels([("officeDocument", "ppt/presentation.xml")])),
        ("ppt/presentation.xml", presentation(n)),
        ("ppt/_rels/presentation.xml.rels",
         rels([("slideMaster", "slideMasters/slideMaster1.xml")]
              + [("slide", f"slides/slide{i + 1}.xml") for i in range(n)]
              + [("theme", "theme/theme1.xml")])),
        ("ppt/slideMasters/slideMaster1.xml", MASTER),
        ("ppt/slideMasters/_rels/slideMaster1.xml.rels",
         rels([("slideLayout", "../slideLayouts/slideLayout1.xml"), ("theme", "../theme/theme1.xml")])),
        ("ppt/slideLayouts/slideLayout1.xml", LAYOUT),
        ("ppt/slideLayouts/_rels/slideLayout1.xml.rels", rels([("slideMaster", "../slideMasters/slideMaster1.xml")])),
        ("ppt/theme/theme1.xml", THEME),
    ]
    for i, (title, lines) in enumerate(SLIDES):
        parts.append((f"ppt/slides/slide{i + 1}.xml", slide(title, lines)))
        parts.append((f"ppt/slides/_rels/slide{i + 1}.xml.rels", rels([("slideLayout", "../slideLayouts/slideLayout1.xml")])))
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as z:
        for name, text in parts:
            info = zipfile.ZipInfo(name, date_time=(2026, 1, 1, 0, 0, 0))
            info.compress_type = zipfile.ZIP_DEFLATED
            z.writestr(info, text.encode("utf-8"))


if __name__ == "__main__":
    main()

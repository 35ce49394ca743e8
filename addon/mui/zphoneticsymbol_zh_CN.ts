<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: MIT -->
<!-- The add-on's texts in Simplified Chinese; compiled to mui/zh_CN/zphoneticsymbol.qm. -->
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>ZPhoneticSymbolWebWindow</name>
    <message>
        <source>PhoneticSymbol</source>
        <translation>拼音标注</translation>
    </message>
</context>
<context>
    <name>ZPhoneticSymbolModel</name>
    <message>
        <source>please select one character at least</source>
        <translation>请至少选择一个字符</translation>
    </message>
    <message>
        <source>set phonetic symbol</source>
        <translation>标注拼音</translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>StudioWindow</name>
    <message>
        <source>&amp;Open...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pinyin Guide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check and choose the pinyin of the selected text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pinyin at Once</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write the pinyin of each selected text into a new text box</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Next Slide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Previous Slide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;About zphonetic-studio</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>zphonetic-studio %1
Writes the pinyin of the Chinese text on your slides.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Pinyin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has changes that are not saved. Save them first?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The deck could not be opened.

%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The deck could not be saved.

%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a Deck</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Presentations (*.pptx)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the Deck As</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pinyin add-on could not be loaded, so its commands are not available.

%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Slide %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a deck with File &gt; Open, or drop one here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1[*] - zphonetic-studio</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>StudioWindow</name>
    <message>
        <source>&amp;Open...</source>
        <translation>打开(&amp;O)...</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>另存为(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>Pinyin Readings</source>
        <translation>拼音标注</translation>
    </message>
    <message>
        <source>Check and choose the pinyin of the selected text</source>
        <translation>查看并选择所选文字的拼音</translation>
    </message>
    <message>
        <source>Pinyin at Once</source>
        <translation>一键拼音</translation>
    </message>
    <message>
        <source>Write the pinyin of each selected text into a new text box</source>
        <translation>将每段所选文字的拼音写入新的文本框</translation>
    </message>
    <message>
        <source>&amp;Next Slide</source>
        <translation>下一张幻灯片(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Previous Slide</source>
        <translation>上一张幻灯片(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;About zphonetic-studio</source>
        <translation>关于 zphonetic-studio(&amp;A)</translation>
    </message>
    <message>
        <source>zphonetic-studio %1
Writes the pinyin of the Chinese text on your slides.</source>
        <translation>zphonetic-studio %1
为幻灯片上的中文加注拼音。</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>最近打开(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Pinyin</source>
        <translation>拼音(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>插入</translation>
    </message>
    <message>
        <source>Text Tool</source>
        <translation>文本工具</translation>
    </message>
    <message>
        <source>%1 has changes that are not saved. Save them first?</source>
        <translation>%1 有尚未保存的更改。要先保存吗？</translation>
    </message>
    <message>
        <source>The deck could not be opened.

%1</source>
        <translation>无法打开演示文稿。

%1</translation>
    </message>
    <message>
        <source>The deck could not be saved.

%1</source>
        <translation>无法保存演示文稿。

%1</translation>
    </message>
    <message>
        <source>Open a Deck</source>
        <translation>打开演示文稿</translation>
    </message>
    <message>
        <source>Presentations (*.pptx)</source>
        <translation>演示文稿 (*.pptx)</translation>
    </message>
    <message>
        <source>Save the Deck As</source>
        <translation>演示文稿另存为</translation>
    </message>
    <message>
        <source>The pinyin add-on could not be loaded, so its commands are not available.

%1</source>
        <translation>无法加载拼音加载项，其命令不可用。

%1</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>撤销(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>恢复(&amp;R)</translation>
    </message>
    <message>
        <source>Slide %1 of %2</source>
        <translation>第 %1 张，共 %2 张</translation>
    </message>
    <message>
        <source>Open a deck with File &gt; Open, or drop one here.</source>
        <translation>用“文件 &gt; 打开”打开演示文稿，或将文件拖放到此处。</translation>
    </message>
    <message>
        <source>%1[*] - zphonetic-studio</source>
        <translation>%1[*] - zphonetic-studio</translation>
    </message>
    <message>
        <source>Text Box</source>
        <translation>文本框</translation>
    </message>
    <message>
        <source>Add a text box to the slide and type in it</source>
        <translation>在幻灯片上添加文本框并在其中输入文字</translation>
    </message>
    <message>
        <source>&amp;Insert</source>
        <translation>插入(&amp;I)</translation>
    </message>
    <message>
        <source>insert text box</source>
        <translation>插入文本框</translation>
    </message>
    <message>
        <source>Pinyin at Once &amp;Puts Its Boxes</source>
        <translation>一键拼音的位置(&amp;P)</translation>
    </message>
    <message>
        <source>Below the Text</source>
        <translation>文字下方</translation>
    </message>
    <message>
        <source>Above the Text</source>
        <translation>文字上方</translation>
    </message>
    <message>
        <source>Where the Add-on Puts Them</source>
        <translation>插件的默认位置</translation>
    </message>
    <message>
        <source>move</source>
        <translation>移动</translation>
    </message>
</context>
<context>
    <name>SlideView</name>
    <message>
        <source>move</source>
        <translation>移动</translation>
    </message>
    <message>
        <source>resize</source>
        <translation>调整大小</translation>
    </message>
    <message>
        <source>typing</source>
        <translation>键入</translation>
    </message>
    <message>
        <source>delete text</source>
        <translation>删除文字</translation>
    </message>
    <message>
        <source>cut</source>
        <translation>剪切</translation>
    </message>
    <message>
        <source>paste</source>
        <translation>粘贴</translation>
    </message>
    <message>
        <source>delete</source>
        <translation>删除</translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>MyReadingsWindow</name>
    <message>
        <source>My Readings</source>
        <translation>我的读音</translation>
    </message>
    <message>
        <source>Give a word readings of your own: they are used wherever the word occurs, over what the pinyin commands would choose.</source>
        <translation>为词语指定您自己的读音：无论这个词出现在哪里，都用这些读音，而不用拼音命令自动选择的读音。</translation>
    </message>
    <message>
        <source>Word</source>
        <translation>词语</translation>
    </message>
    <message>
        <source>Readings</source>
        <translation>读音</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>添加(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Change...</source>
        <translation>修改(&amp;C)...</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>删除(&amp;R)</translation>
    </message>
    <message>
        <source>The tones of 一 and 不</source>
        <translation>“一”和“不”的声调</translation>
    </message>
    <message>
        <source>As taught in school: 一个 yí gè, 不是 bú shì</source>
        <translation>按课本标变调：一个 yí gè，不是 bú shì</translation>
    </message>
    <message>
        <source>As dictionaries write them: 一个 yī gè, 不是 bù shì</source>
        <translation>按词典标原调：一个 yī gè，不是 bù shì</translation>
    </message>
    <message>
        <source>The file is UTF-16 text: save it as UTF-8 to use it.</source>
        <translation>文件是 UTF-16 编码：请另存为 UTF-8 后再用。</translation>
    </message>
    <message>
        <source>Not UTF-8 text.</source>
        <translation>不是 UTF-8 文本。</translation>
    </message>
    <message>
        <source>"%1" is not a word of Chinese characters.</source>
        <translation>“%1”不是由汉字组成的词语。</translation>
    </message>
    <message>
        <source>"%1" is longer than %2 characters.</source>
        <translation>“%1”超过 %2 个字。</translation>
    </message>
    <message>
        <source>%1 has no readings.</source>
        <translation>“%1”没有读音。</translation>
    </message>
    <message>
        <source>1 character</source>
        <translation>1 个字</translation>
    </message>
    <message>
        <source>%1 characters</source>
        <translation>%1 个字</translation>
    </message>
    <message>
        <source>1 reading</source>
        <translation>1 个读音</translation>
    </message>
    <message>
        <source>%1 readings</source>
        <translation>%1 个读音</translation>
    </message>
    <message>
        <source>%1 has %2 but %3.</source>
        <translation>“%1”有 %2，却有 %3。</translation>
    </message>
    <message>
        <source>"%1" is not a pinyin syllable.</source>
        <translation>“%1”不是拼音音节。</translation>
    </message>
    <message>
        <source>%1 is already on line %2.</source>
        <translation>“%1”已在第 %2 行。</translation>
    </message>
    <message>
        <source>The tones must be "taught" or "original".</source>
        <translation>声调只能是“taught”或“original”。</translation>
    </message>
    <message>
        <source>The tones are already set on line %1.</source>
        <translation>声调已在第 %1 行设置。</translation>
    </message>
    <message>
        <source>Line %1 of the file is not used: %2</source>
        <translation>文件第 %1 行未被使用：%2</translation>
    </message>
    <message>
        <source>The file cannot be used: %1.</source>
        <translation>无法使用该文件：%1。</translation>
    </message>
    <message>
        <source>There is nowhere to keep them: neither HOME nor XDG_CONFIG_HOME is set.</source>
        <translation>无处保存：HOME 和 XDG_CONFIG_HOME 均未设置。</translation>
    </message>
    <message>
        <source>Kept in %1</source>
        <translation>保存在 %1</translation>
    </message>
    <message>
        <source>Your readings could not be saved.

%1: %2</source>
        <translation>无法保存您的读音。

%1：%2</translation>
    </message>
    <message>
        <source>One reading for each character, with tone marks or tone numbers.</source>
        <translation>每个字一个读音，可用声调符号或数字标调。</translation>
    </message>
    <message>
        <source>Word:</source>
        <translation>词语：</translation>
    </message>
    <message>
        <source>Readings:</source>
        <translation>读音：</translation>
    </message>
    <message>
        <source>Add a Word</source>
        <translation>添加词语</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Change a Word</source>
        <translation>修改词语</translation>
    </message>
    <message>
        <source>The file was changed by another program; it is shown as it is now.</source>
        <translation>文件已被其他程序修改，现显示其最新内容。</translation>
    </message>
</context>
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
        <source>Pinyin over Text</source>
        <translation>拼音在上</translation>
    </message>
    <message>
        <source>Write the pinyin of each selected text over its characters, as school books print it</source>
        <translation>把所选文字的拼音写在每个字的上方，像课本那样</translation>
    </message>
    <message>
        <source>The pinyin could not be placed over its text: %1</source>
        <translation>拼音无法放在文字上方：%1</translation>
    </message>
    <message>
        <source>My &amp;Readings...</source>
        <translation>我的读音(&amp;R)...</translation>
    </message>
    <message>
        <source>Words you give readings of your own, and the tones of 一 and 不</source>
        <translation>您为词语指定的读音，以及“一”和“不”的声调</translation>
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
        <source>Over the Characters</source>
        <translation>每个字的上方</translation>
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
    <name>ReadingsFollower</name>
    <message>
        <source>delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Pinyin over Text</source>
        <translation>拼音在上</translation>
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

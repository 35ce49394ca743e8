// SPDX-License-Identifier: MIT
// The page's texts. Chinese is the default; English when the page's language is English.
(function (ns) {
  'use strict';

  var TEXTS = {
    zh: {
      title: '拼音标注',
      close: '关闭',
      readingsHeading: '文字与读音',
      readingsHint: '多音字可点选读音',
      readingOf: '“{0}”的读音',
      noReading: '没有读音',
      lineBreak: '换行',
      layoutHeading: '拼音位置',
      layout1: '文字之后',
      layout2: '每个字之后',
      layout3: '单独文本框',
      bracketHeading: '括号样式',
      bracket1: '圆括号',
      bracket2: '方括号',
      bracket3: '无括号，加粗',
      bracket4: '斜线',
      bracket5: '花括号',
      previewHeading: '预览',
      previewSelection: '所选文字',
      previewUnchanged: '所选文字（不变）',
      previewNewBox: '新文本框',
      previewLimit: '对话框最多收到所选文字的前 %1 个字。其后若还有文字，则原样保留、不标注读音，写在文字后面的读音会在全部文字之后。',
      help: '使用帮助',
      cancel: '取消',
      confirm: '确定',
      keysHint: 'Enter 确定 · Esc 取消',
      noHost: '此页面需要在演示程序的拼音标注窗口中打开。',
      noText: '所选内容中没有可标注拼音的汉字。请先选中含有汉字的文字。',
      hostFailed: '演示程序没有响应，请关闭窗口后重试。',
      guideHeading: '请先选中文字',
      guideIntro: '拼音标注只为选中的汉字添加拼音。',
      guideStep1: '在幻灯片的文本框里拖动鼠标，选中要标注的文字。',
      guideStep2: '再点击“拼音标注”，就可以挑选读音和样式。',
      guideNote: '一次最多标注 %1 个字。',
      guideRibbon: '拼音标注',
      guideClose: '知道了'
    },
    en: {
      title: 'Pinyin readings',
      close: 'Close',
      readingsHeading: 'Text and readings',
      readingsHint: 'Choose a reading where a character has several',
      readingOf: 'Reading of “{0}”',
      noReading: 'No reading known',
      lineBreak: 'Line break',
      layoutHeading: 'Where the readings go',
      layout1: 'After the text',
      layout2: 'After each character',
      layout3: 'In a text box of their own',
      bracketHeading: 'Brackets',
      bracket1: 'Full-width',
      bracket2: 'Square',
      bracket3: 'None, bold',
      bracket4: 'Slashes',
      bracket5: 'Braces',
      previewHeading: 'Preview',
      previewSelection: 'Selected text',
      previewUnchanged: 'Selected text (unchanged)',
      previewNewBox: 'New text box',
      previewLimit: 'The dialog is given at most the first %1 characters of a selection. Any characters after them stay as they are, without readings, and readings written after the text come after all of it.',
      help: 'Help',
      cancel: 'Cancel',
      confirm: 'OK',
      keysHint: 'Enter confirms · Esc cancels',
      noHost: 'This page only works inside the pinyin window of the presentation program.',
      noText: 'The selection holds no Chinese character with a known reading. Select some Chinese text first.',
      hostFailed: 'The presentation program did not answer. Close this window and try again.',
      guideHeading: 'Select some text first',
      guideIntro: 'Pinyin readings are added to the Chinese characters you have selected.',
      guideStep1: 'On the slide, click into a text box and drag across the characters to annotate.',
      guideStep2: 'Then click "Pinyin Readings" to choose the readings and their style.',
      guideNote: 'Up to %1 characters are annotated at a time.',
      guideRibbon: 'Pinyin',
      guideClose: 'Got it'
    }
  };

  function languageOf(navigatorLanguage) {
    return /^en/i.test(String(navigatorLanguage || '')) ? 'en' : 'zh';
  }

  // Texts for a language, with "{0}" placeholders filled by format().
  function textsFor(language) {
    var table = TEXTS[language] || TEXTS.zh;
    return {
      language: language === 'en' ? 'en' : 'zh',
      get: function (key) { return table[key]; },
      format: function (key, value) { return table[key].replace('{0}', value); }
    };
  }

  ns.strings = { languageOf: languageOf, textsFor: textsFor };
})(window.zphonetic = window.zphonetic || {});

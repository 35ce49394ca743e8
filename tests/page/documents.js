// SPDX-License-Identifier: MIT
// Readings documents as getPhoneticText delivers them ("result" of its reply). Readings use
// ɑ (U+0251) and ɡ (U+0261) for a and g, as the add-on writes them.
'use strict';

function entry(index, text, pinyin, duyin) {
  return { duyin, index, pinyin, text };
}

function readingsDocument(entries, options) {
  const settings = Object.assign({ color: [0, 0, 0], styleType: -1, bracketType: -1 }, options);
  return {
    bracketType: settings.bracketType,
    data: { color: settings.color, phonetic: entries },
    styleType: settings.styleType
  };
}

// A polyphone (都, 得 read děi in context), a Latin letter, a Chinese character without a
// reading (two spaces), readings with ɡ and ɑ, and a closing full stop.
const MIXED_ENTRIES = [
  entry(0, '你', 'nǐ', ['nǐ']),
  entry(1, '都', 'dōu', ['dōu', 'dū']),
  entry(2, '得', 'děi', ['dé', 'de', 'děi']),
  entry(3, 'A', '', []),
  entry(4, '龥', '  ', []),
  entry(5, '国', 'ɡuó', ['ɡuó']),
  entry(6, '吗', 'mɑ', ['mɑ', 'mǎ', 'mɑ́']),
  entry(7, '。', '', [])
];

const NIHAO_ENTRIES = [
  entry(0, '你', 'nǐ', ['nǐ']),
  entry(1, '好', 'hǎo', ['hǎo', 'hào'])
];

// Thirty UTF-16 units, the most the dialog is given: two lines of a poem with punctuation.
const POEM = [
  ['春', 'chūn'], ['眠', 'mián'], ['不', 'bù', ['bù', 'bú']], ['觉', 'jué', ['jué', 'jiào']], ['晓', 'xiǎo'],
  ['，', ''], ['处', 'chù', ['chù', 'chǔ']], ['处', 'chù', ['chù', 'chǔ']], ['闻', 'wén'], ['啼', 'tí'],
  ['鸟', 'niǎo'], ['。', ''], ['夜', 'yè'], ['来', 'lái'], ['风', 'fēnɡ'], ['雨', 'yǔ', ['yǔ', 'yù']],
  ['声', 'shēnɡ'], ['，', ''], ['花', 'huā'], ['落', 'luò', ['luò', 'lào', 'là', 'luō']], ['知', 'zhī'],
  ['多', 'duō'], ['少', 'shǎo', ['shǎo', 'shào']], ['。', ''], ['床', 'chuánɡ'], ['前', 'qián'],
  ['明', 'mínɡ'], ['月', 'yuè'], ['光', 'ɡuānɡ'], ['，', '']
].map(([text, pinyin, duyin], index) => entry(index, text, pinyin, duyin || (pinyin ? [pinyin] : [])));

module.exports = { entry, readingsDocument, MIXED_ENTRIES, NIHAO_ENTRIES, POEM };

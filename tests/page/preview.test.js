// SPDX-License-Identifier: MIT
// The preview shows exactly what the add-on will write for each layout and bracket kind,
// in the selection's colour, and follows every choice the user makes.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { launch, openDialog } = require('./harness');
const { entry, readingsDocument, MIXED_ENTRIES, NIHAO_ENTRIES, POEM } = require('./documents');

const PAIRS = { 1: ['（', '）'], 2: ['[', ']'], 3: ['', ''], 4: ['/', '/'], 5: ['{', '}'] };

// The boxes the preview shows: which box, the exact text written, and its bold part.
function previewOf(page) {
  return page.$$eval('.preview-area .box', (boxes) => boxes.map((box) => ({
    kind: box.getAttribute('data-kind'),
    text: box.getAttribute('data-text'),
    shown: box.querySelector('.box-text').textContent,
    bold: Array.from(box.querySelectorAll('strong'), (strong) => strong.textContent)
  })));
}

async function choose(page, styleType, bracketType) {
  await page.check(`input[name=layout][value="${styleType}"]`, { force: true });
  await page.check(`input[name=bracket][value="${bracketType}"]`, { force: true });
}

describe('preview of what will be written', () => {
  let browser;
  before(async () => { browser = await launch(); });
  after(async () => { await browser.close(); });

  it('shows every layout with every bracket kind exactly as written', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    for (const styleType of [1, 2, 3]) {
      for (const bracketType of [1, 2, 3, 4, 5]) {
        await choose(dialog.page, styleType, bracketType);
        const [open, close] = PAIRS[bracketType];
        const grouped = open + 'nǐ hǎo' + close;
        const bold = bracketType === 3;
        let expected;
        if (styleType === 1) {
          expected = [{ kind: 'selection', text: '你好' + grouped, shown: '你好' + grouped, bold: bold ? [grouped] : [] }];
        } else if (styleType === 2) {
          const written = '你' + open + 'nǐ' + close + '好' + open + 'hǎo' + close;
          expected = [{ kind: 'selection', text: written, shown: written, bold: bold ? ['nǐ', 'hǎo'] : [] }];
        } else {
          expected = [
            { kind: 'newBox', text: grouped, shown: grouped, bold: bold ? [grouped] : [] },
            { kind: 'selection', text: '你好', shown: '你好', bold: [] }
          ];
        }
        assert.deepEqual(await previewOf(dialog.page), expected, `layout ${styleType}, brackets ${bracketType}`);
      }
    }
    await dialog.close();
  });

  it('writes 你好[nǐ hǎo] after the text and 你（nǐ）好（hǎo） after each character', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await choose(dialog.page, 1, 2);
    assert.equal((await previewOf(dialog.page))[0].text, '你好[nǐ hǎo]');
    await choose(dialog.page, 2, 1);
    assert.equal((await previewOf(dialog.page))[0].text, '你（nǐ）好（hǎo）');
    await dialog.close();
  });

  it('skips empty readings with their space, but appends the last one as it is (a trailing space stays)', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    await choose(dialog.page, 1, 1);
    assert.equal((await previewOf(dialog.page))[0].text, '你都得A龥国吗。（nǐ dōu děi ɡuó mɑ ）');
    await choose(dialog.page, 3, 5);
    assert.equal((await previewOf(dialog.page))[0].text, '{nǐ dōu děi ɡuó mɑ }');
    await dialog.close();
  });

  it('writes nothing after a character whose reading is empty when writing after each character', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    await choose(dialog.page, 2, 2);
    assert.equal((await previewOf(dialog.page))[0].text, '你[nǐ]都[dōu]得[děi]A龥国[ɡuó]吗[mɑ]。');
    await dialog.close();
  });

  it('follows the reading chosen from the candidates', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    await dialog.page.selectOption('.cell[data-index="1"] select', 'dū');
    await dialog.page.selectOption('.cell[data-index="2"] select', 'de');
    await choose(dialog.page, 2, 4);
    assert.equal((await previewOf(dialog.page))[0].text, '你/nǐ/都/dū/得/de/A龥国/ɡuó/吗/mɑ/。');
    await dialog.close();
  });

  it('colours the preview with the selection colour, on a dark ground when the colour is light', async () => {
    const red = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES, { color: [200, 16, 32] }) });
    assert.equal(await red.page.$eval('.box-text', (box) => getComputedStyle(box).color), 'rgb(200, 16, 32)');
    assert.equal(await red.page.$eval('.preview-area', (area) => area.classList.contains('on-dark')), false);
    await red.close();
    const white = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES, { color: [255, 255, 255] }) });
    assert.equal(await white.page.$eval('.box-text', (box) => getComputedStyle(box).color), 'rgb(255, 255, 255)');
    assert.equal(await white.page.$eval('.preview-area', (area) => getComputedStyle(area).backgroundColor), 'rgb(51, 65, 85)');
    await white.close();
  });

  it('shows the line breaks of the selection as line breaks', async () => {
    const dialog = await openDialog(browser, {
      document: readingsDocument([entry(0, '你', 'nǐ', ['nǐ']), entry(1, '\r', '', []), entry(2, '好', 'hǎo', ['hǎo'])])
    });
    await choose(dialog.page, 2, 1);
    const box = (await previewOf(dialog.page))[0];
    assert.equal(box.text, '你（nǐ）\r好（hǎo）');
    assert.equal(await dialog.page.locator('.box-text br').count(), 1);
    assert.equal(await dialog.page.textContent('.cell[data-index="1"] .char'), '\u21B5');
    await dialog.close();
  });

  it('shows what is written for a selection of exactly the 30 units the dialog is given, and a note that claims neither more nor no more', async () => {
    // The page cannot tell 30 units from a longer selection cut to 30: it previews what the add-on
    // writes for the 30 it has, with no mark for a rest that may not exist.
    const chars = POEM.map((e) => e.text).join('');
    const dialog = await openDialog(browser, { document: readingsDocument(POEM) });
    await choose(dialog.page, 1, 1);
    const [after] = await previewOf(dialog.page);
    assert.equal(after.text, chars + '（chūn mián bù jué xiǎo chù chù wén tí niǎo yè lái fēnɡ yǔ shēnɡ ' +
      'huā luò zhī duō shǎo chuánɡ qián mínɡ yuè ɡuānɡ ）');
    assert.equal(after.shown, after.text);
    await choose(dialog.page, 2, 2);
    const [each] = await previewOf(dialog.page);
    assert.ok(each.text.startsWith('春[chūn]眠[mián]'), each.text);
    assert.ok(each.text.endsWith('光[ɡuānɡ]，'), each.text);
    await choose(dialog.page, 3, 3);
    assert.deepEqual((await previewOf(dialog.page)).map((box) => [box.kind, box.text.slice(-2)]),
      [['newBox', 'ɡ '], ['selection', '光，']]);
    for (const box of await previewOf(dialog.page)) {
      assert.ok(!box.text.includes('…') && !box.shown.includes('…'), box.text);
    }
    assert.equal(await dialog.page.textContent('.preview-note'),
      '对话框最多收到所选文字的前 30 个字。其后若还有文字，则原样保留、不标注读音，写在文字后面的读音会在全部文字之后。');
    await dialog.close();

    const english = await openDialog(browser, { document: readingsDocument(POEM), locale: 'en-US' });
    assert.equal(await english.page.textContent('.preview-note'),
      'The dialog is given at most the first 30 characters of a selection. Any characters after ' +
      'them stay as they are, without readings, and readings written after the text come after all of it.');
    await english.close();

    const shorter = await openDialog(browser, { document: readingsDocument(POEM.slice(0, 29)) });
    await choose(shorter.page, 1, 1);
    assert.equal((await previewOf(shorter.page))[0].text.slice(0, 29), chars.slice(0, 29));
    assert.equal(await shorter.page.locator('.preview-note').count(), 0);
    await shorter.close();
  });

  it('draws the layout samples with the chosen brackets', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await choose(dialog.page, 2, 5);
    const samples = await dialog.page.$$eval('.layouts .option-sample', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(samples, ['汉字{hàn zì}', '汉{hàn}字{zì}', '{hàn zì}汉字']);
    await dialog.close();
  });
});

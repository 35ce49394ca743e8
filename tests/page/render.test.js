// SPDX-License-Identifier: MIT
// The pinyin view shows what getPhoneticText delivered: every character with its reading
// above it, selectors for polyphones, the last choices, in the page's language.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { launch, openDialog } = require('./harness');
const { entry, readingsDocument, MIXED_ENTRIES, NIHAO_ENTRIES, POEM } = require('./documents');

describe('pinyin view rendering', () => {
  let browser;
  before(async () => { browser = await launch(); });
  after(async () => { await browser.close(); });

  const cellsOf = (page) => page.$$eval('.cell', (cells) => cells.map((cell) => ({
    className: cell.className,
    char: cell.querySelector('.char').textContent,
    reading: cell.querySelector('select') ? 'select:' + cell.querySelector('select').value
      : cell.querySelector('.reading-text').textContent
  })));

  it('shows every character with its reading, a polyphone as a selector, and no reading where there is none', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    assert.deepEqual(await cellsOf(dialog.page), [
      { className: 'cell', char: '你', reading: 'nǐ' },
      { className: 'cell polyphone', char: '都', reading: 'select:dōu' },
      { className: 'cell polyphone', char: '得', reading: 'select:děi' },
      { className: 'cell other', char: 'A', reading: '' },
      { className: 'cell no-reading', char: '龥', reading: '' },
      { className: 'cell', char: '国', reading: 'ɡuó' },
      { className: 'cell polyphone', char: '吗', reading: 'select:mɑ' },
      { className: 'cell other', char: '。', reading: '' }
    ]);
    // Candidates in the document's order, default first; the reading in context selected.
    const options = await dialog.page.$$eval('select.reading-choice', (selects) =>
      selects.map((select) => Array.from(select.options, (option) => option.value)));
    assert.deepEqual(options, [['dōu', 'dū'], ['dé', 'de', 'děi'], ['mɑ', 'mǎ', 'mɑ́']]);
    assert.equal(await dialog.page.getAttribute('.cell.no-reading', 'title'), '没有读音');
    // The reading stands above its character.
    const reading = await dialog.page.locator('.cell').nth(0).locator('.reading').boundingBox();
    const char = await dialog.page.locator('.cell').nth(0).locator('.char').boundingBox();
    assert.ok(reading.y + reading.height <= char.y + 1, 'reading above the character');
    await dialog.close();
  });

  it('shows ɑ and ɡ as they arrive, and draws Chinese and tone marks with Noto Sans CJK SC', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    const guo = await dialog.page.textContent('.cell[data-index="5"] .reading-text');
    assert.deepEqual(Array.from(guo, (c) => c.codePointAt(0).toString(16)), ['261', '75', 'f3']);
    const cdp = await dialog.page.context().newCDPSession(dialog.page);
    await cdp.send('DOM.enable');
    await cdp.send('CSS.enable');
    const { root } = await cdp.send('DOM.getDocument');
    for (const selector of ['.cell[data-index="5"] .reading-text', '.cell[data-index="5"] .char', '.preview-area .box-text']) {
      const { nodeId } = await cdp.send('DOM.querySelector', { nodeId: root.nodeId, selector });
      const { fonts } = await cdp.send('CSS.getPlatformFontsForNode', { nodeId });
      assert.deepEqual([...new Set(fonts.map((font) => font.familyName))], ['Noto Sans CJK SC'], selector);
    }
    await dialog.close();
  });

  it('starts from the page defaults (after each character, full-width parentheses) when the document says -1', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await dialog.page.$eval('input[name=layout]:checked', (input) => input.value), '2');
    assert.equal(await dialog.page.$eval('input[name=bracket]:checked', (input) => input.value), '1');
    await dialog.close();
  });

  it('starts from the last choices the document carries', async () => {
    const dialog = await openDialog(browser, {
      document: readingsDocument(NIHAO_ENTRIES, { styleType: 3, bracketType: 4 })
    });
    assert.equal(await dialog.page.$eval('input[name=layout]:checked', (input) => input.value), '3');
    assert.equal(await dialog.page.$eval('input[name=bracket]:checked', (input) => input.value), '4');
    await dialog.close();
  });

  it('falls back to the page defaults for values it does not know', async () => {
    const dialog = await openDialog(browser, {
      document: readingsDocument(NIHAO_ENTRIES, { styleType: 0, bracketType: 9 })
    });
    assert.equal(await dialog.page.$eval('input[name=layout]:checked', (input) => input.value), '2');
    assert.equal(await dialog.page.$eval('input[name=bracket]:checked', (input) => input.value), '1');
    await dialog.close();
  });

  it('asks for the readings and the edition, then sizes the window to its content and marks itself rendered', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    const calls = await dialog.calls();
    assert.deepEqual(calls.map((call) => call.method).sort(), ['changeSize', 'getPhoneticText', 'onGetIsEnterprise']);
    assert.deepEqual((await dialog.calls('getPhoneticText'))[0].args, {});
    assert.equal(calls[calls.length - 1].method, 'changeSize', 'resized after rendering');
    const size = calls[calls.length - 1].args;
    const box = await dialog.page.locator('.dialog').boundingBox();
    assert.deepEqual(size, { width: 626, height: Math.ceil(box.height) });
    assert.ok(Number.isInteger(size.height) && size.height > 300);
    assert.equal(await dialog.page.getAttribute('html', 'data-rendered'), 'pinyin');
    assert.equal(await dialog.page.getAttribute('html', 'data-from'), 'home');
    assert.equal(await dialog.page.getAttribute('html', 'data-edition'), 'standard');
    await dialog.close();
  });

  it('keeps its height when the layout changes, so the window sized once still fits', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    const heights = [];
    for (const type of ['1', '2', '3', '1']) {
      await dialog.page.check(`input[name=layout][value="${type}"]`, { force: true });
      heights.push((await dialog.page.locator('.dialog').boundingBox()).height);
    }
    assert.equal(new Set(heights).size, 1, heights.join(' '));
    assert.equal((await dialog.calls('changeSize')).length, 1);
    await dialog.close();
  });

  it('asks for a new size when the content grows after all', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    const first = (await dialog.calls('changeSize'))[0].args;
    await dialog.page.evaluate(() => {
      const block = document.createElement('div');
      block.style.height = '100px';
      document.getElementById('view').appendChild(block);
    });
    await dialog.page.waitForFunction(() => window.__hostLog.calls.filter((call) => call.method === 'changeSize').length === 2);
    const second = (await dialog.calls('changeSize'))[1].args;
    assert.deepEqual(second, { width: 626, height: first.height + 100 });
    await dialog.close();
  });

  it('keeps the 40 px title bar for the title and the close button only', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    const bar = await dialog.page.locator('.titlebar').boundingBox();
    assert.deepEqual(bar, { x: 0, y: 0, width: 626, height: 40 });
    assert.deepEqual(await dialog.page.$$eval('.titlebar > *', (nodes) => nodes.map((node) => node.id)), ['title', 'close']);
    assert.equal(await dialog.page.textContent('#title'), '拼音标注');
    await dialog.close();
  });

  it('speaks English when the page language is English, Chinese otherwise', async () => {
    const english = await openDialog(browser, { locale: 'en-US', document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await english.page.getAttribute('html', 'lang'), 'en');
    assert.equal(await english.page.textContent('#title'), 'Pinyin readings');
    assert.equal(await english.page.textContent('.confirm'), 'OK');
    assert.equal(await english.page.textContent('.cancel'), 'Cancel');
    await english.close();
    const french = await openDialog(browser, { locale: 'fr-FR', document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await french.page.getAttribute('html', 'lang'), 'zh-CN');
    assert.equal(await french.page.textContent('.confirm'), '确定');
    assert.equal(await french.page.textContent('.layouts legend'), '拼音位置');
    await french.close();
  });

  it('reads the origin from the query after the fragment, and none when it is absent', async () => {
    const texttool = await openDialog(browser, { fragment: '#/pinyin?from=texttool', document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await texttool.page.getAttribute('html', 'data-from'), 'texttool');
    await texttool.close();
    const none = await openDialog(browser, { fragment: '#/pinyin', document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await none.page.getAttribute('html', 'data-from'), '');
    assert.equal(await none.page.getAttribute('html', 'data-rendered'), 'pinyin');
    await none.close();
  });

  it('says there is nothing to annotate when the result is null, and writes nothing', async () => {
    const dialog = await openDialog(browser, { document: null });
    assert.equal(await dialog.page.getAttribute('html', 'data-problem'), 'no-text');
    assert.match(await dialog.page.textContent('.problem'), /没有可标注拼音的汉字/);
    assert.equal(await dialog.page.locator('.cell').count(), 0);
    await dialog.page.click('.footer .button.primary');
    assert.deepEqual(await dialog.calls('setPhoneticText'), []);
    assert.equal((await dialog.log()).closes, 1);
    await dialog.close();
  });

  it('shows a clear message and does not throw when the host is missing', async () => {
    const dialog = await openDialog(browser, { noHost: true });
    assert.equal(await dialog.page.getAttribute('html', 'data-rendered'), 'pinyin');
    assert.equal(await dialog.page.getAttribute('html', 'data-problem'), 'no-host');
    assert.match(await dialog.page.textContent('.problem'), /演示程序/);
    assert.equal(await dialog.page.locator('.help').count(), 0, 'no help link without a host to open it');
    await dialog.close();
  });

  it('tells the user when the host refuses to give the readings', async () => {
    const dialog = await openDialog(browser, { reject: ['getPhoneticText'], document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await dialog.page.getAttribute('html', 'data-problem'), 'host-failed');
    assert.match(await dialog.page.textContent('.problem'), /没有响应/);
    await dialog.close();
  });

  it('survives a malformed document: bad elements are left out, bad members get safe values', async () => {
    const document = {
      bracketType: '2',
      data: {
        color: 'red',
        phonetic: [
          entry(0, '都', 'dōu', null),
          7,
          { index: 'x', text: '好', pinyin: 'hǎo', duyin: ['hǎo', 5, 'hào'] },
          { text: 42, pinyin: null }
        ]
      },
      styleType: 'many'
    };
    const dialog = await openDialog(browser, { document });
    assert.deepEqual(await cellsOf(dialog.page), [
      { className: 'cell', char: '都', reading: 'dōu' },
      { className: 'cell polyphone', char: '好', reading: 'select:hǎo' },
      { className: 'cell other', char: '', reading: '' }
    ]);
    assert.equal(await dialog.page.$eval('input[name=layout]:checked', (input) => input.value), '2');
    assert.equal(await dialog.page.$eval('input[name=bracket]:checked', (input) => input.value), '2');
    assert.equal(await dialog.page.$eval('.box-text', (box) => getComputedStyle(box).color), 'rgb(0, 0, 0)');
    await dialog.close();
  });

  it('keeps punctuation with its character so no line of characters starts with a comma or a full stop', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(POEM) });
    const groups = await dialog.page.$$eval('.cell-group', (nodes) => nodes.map((node) =>
      Array.from(node.querySelectorAll('.char'), (char) => char.textContent).join('')));
    assert.deepEqual(groups.filter((group) => group.length > 1), ['晓，', '鸟。', '声，', '少。', '光，']);
    const rowStarts = await dialog.page.$$eval('.cell-group', (nodes) => nodes
      .filter((node, position) => position === 0 || node.offsetTop > nodes[position - 1].offsetTop)
      .map((node) => node.querySelector('.char').textContent));
    assert.ok(rowStarts.length >= 2, 'thirty units take more than one row');
    assert.ok(rowStarts.every((char) => !/[，。]/.test(char)), rowStarts.join(' '));
    await dialog.close();
  });

  it('shows a character outside the BMP as one character but keeps its two entries', async () => {
    const dialog = await openDialog(browser, {
      document: readingsDocument([entry(0, '\uD840', '', []), entry(1, '\uDC00', '', []), entry(2, '好', 'hǎo', ['hǎo', 'hào'])])
    });
    assert.deepEqual((await cellsOf(dialog.page)).map((cell) => cell.char), ['\uD840\uDC00', '好']);
    await dialog.page.click('.confirm');
    const sent = JSON.parse((await dialog.calls('setPhoneticText'))[0].args.phonetic);
    assert.deepEqual(sent.map((item) => item.index), [0, 1, 2]);
    await dialog.close();
  });
});

// SPDX-License-Identifier: MIT
// Opens the dialog page in headless Chromium the way the host does (a four-slash file URL
// with the origin query after the fragment), with a recording stand-in for window.zxHost
// injected before the page's own scripts run.
'use strict';

const path = require('node:path');
const fs = require('node:fs');
const assert = require('node:assert/strict');
const { chromium } = requirePlaywright();

function requirePlaywright() {
  try {
    return require('playwright-core');
  } catch (error) {
    throw new Error('playwright-core is missing: run "npm ci --prefix tests/page" first (' + error.message + ')');
  }
}

const REPO = path.resolve(__dirname, '..', '..');
const PAGE = path.join(REPO, 'addon', 'mui', 'default', 'html', 'pinyin', 'index.html');
const CHROMIUM = process.env.ZPHONETIC_CHROMIUM || '/usr/bin/chromium';
// Playwright adds --headless and a fresh, temporary --user-data-dir for every launch.
const FLAGS = [
  '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync'
];
const WINDOW = { width: 627, height: 669 };

function pageUrl(fragment) {
  // PAGE is absolute, so this gives the host's "file:////abs/path/index.html#/pinyin?from=home".
  return 'file:///' + PAGE + fragment;
}

function screenshotDir() {
  const dir = process.env.ZPHONETIC_SCREENSHOT_DIR || path.join(REPO, 'build', 'screenshots');
  fs.mkdirSync(dir, { recursive: true });
  return dir;
}

function launch() {
  return chromium.launch({ executablePath: CHROMIUM, headless: true, args: FLAGS });
}

// Runs in the page before its scripts: records every bridge call, every help URL and every
// window.close(), and answers as the native bridge does (JSON text, or null).
function installMockHost(config) {
  const log = { calls: [], opened: [], closes: 0 };
  window.__hostLog = log;
  window.close = function () { log.calls.push({ method: 'window.close' }); log.closes += 1; };
  if (config.noHost) {
    return;
  }
  const replies = {
    getPhoneticText: () => JSON.stringify({ callstatus: 'ok', result: config.document }, null, 3),
    setPhoneticText: () => '{"callstatus":"ok"}',
    changeSize: () => null,
    onGetIsEnterprise: () => JSON.stringify({ isEnterprise: config.enterprise ? 1 : 0 })
  };
  window.zxHost = {
    call(method, args) {
      // The host serialises the arguments to JSON: record them as native code sees them.
      log.calls.push({ method, args: JSON.parse(JSON.stringify(args)) });
      if (config.reject.indexOf(method) >= 0 || !replies[method]) {
        return Promise.reject(new Error('unknown method ' + method));
      }
      return Promise.resolve(replies[method]());
    },
    openBrowser(url) {
      log.opened.push(url);
    }
  };
}

// Opens the page and waits for its own "rendered" mark. Options: fragment, document (the
// readings document or null), enterprise, locale, noHost, reject (methods that fail).
async function openDialog(browser, options) {
  const config = Object.assign({
    fragment: '#/pinyin?from=home', document: null, enterprise: false, locale: 'zh-CN', noHost: false, reject: []
  }, options);
  const context = await browser.newContext({ locale: config.locale, viewport: WINDOW, deviceScaleFactor: 1 });
  const page = await context.newPage();
  const problems = [];
  page.on('pageerror', (error) => problems.push('page error: ' + error.message));
  page.on('console', (message) => {
    if (message.type() === 'error') problems.push('console error: ' + message.text());
  });
  page.on('request', (request) => {
    if (!/^(file|data):/.test(request.url())) problems.push('network request: ' + request.url());
  });
  await page.addInitScript(installMockHost, config);
  await page.goto(pageUrl(config.fragment));
  await page.waitForSelector('html[data-rendered]');
  return {
    page,
    calls: async (method) => (await page.evaluate(() => window.__hostLog.calls))
      .filter((call) => !method || call.method === method),
    log: () => page.evaluate(() => window.__hostLog),
    // Closes the tab and fails the test if the page threw, logged an error or went online.
    async close() {
      await context.close();
      assert.deepEqual(problems, []);
    }
  };
}

module.exports = { launch, openDialog, pageUrl, screenshotDir, WINDOW };

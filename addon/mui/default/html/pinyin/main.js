// SPDX-License-Identifier: MIT
// Starts the page: reads the route from the fragment ("#/pinyin?from=home"), asks the host
// for what the view needs, renders it, sizes the window to it and marks it rendered.
(function (ns) {
  'use strict';

  var el = ns.dom.el;
  // The project's help pages. The native side appends "&app_type=client&app_name=…", so the
  // address always carries a query of its own.
  var HELP_ADDRESS = 'https://help.zphonetic.invalid/dialog';
  var ORIGINS = ['home', 'texttool'];
  // The host answers changeSize at once; this only keeps a silent host from leaving the page
  // unmarked forever.
  var RESIZE_PATIENCE_MS = 1000;

  var texts = null;
  var current = null;
  var askedSize = null;
  var generation = 0;

  function decoded(value) {
    try {
      return decodeURIComponent(value);
    } catch (error) {
      return '';
    }
  }

  // "#/guide?from=texttool" -> {view: "guide", from: "texttool"}. The origin query stands
  // after the fragment; an unknown view is the pinyin view, an unknown origin is none.
  function parseRoute(hash) {
    var route = String(hash || '').replace(/^#/, '');
    var mark = route.indexOf('?');
    var path = mark < 0 ? route : route.slice(0, mark);
    var from = '';
    (mark < 0 ? '' : route.slice(mark + 1)).split('&').forEach(function (pair) {
      var parts = pair.split('=');
      if (parts[0] === 'from' && ORIGINS.indexOf(decoded(parts[1] || '')) >= 0) {
        from = decoded(parts[1]);
      }
    });
    return { view: path === '/guide' ? 'guide' : 'pinyin', from: from };
  }

  function helpUrl(route) {
    return HELP_ADDRESS + '?view=' + route.view + (route.from ? '&from=' + route.from : '');
  }

  function helpLink(route) {
    return el('a', {
      class: 'help', href: helpUrl(route),
      on: {
        click: function (event) {
          event.preventDefault();
          ns.host.openBrowser(helpUrl(route));
        }
      }
    }, texts.get('help'));
  }

  // The edition flag decides only whether the online help link is offered.
  function askEnterprise() {
    return ns.host.call('onGetIsEnterprise', {}).then(function (reply) {
      return Boolean(reply && Number(reply.isEnterprise) === 1);
    }, function () {
      return false;
    });
  }

  function askReadings() {
    if (!ns.host.available()) {
      return Promise.resolve({ problem: 'no-host' });
    }
    return ns.host.call('getPhoneticText', {}).then(function (reply) {
      var model = ns.readings.readDocument(reply && reply.result);
      return model ? { model: model } : { problem: 'no-text' };
    }, function () {
      return { problem: 'host-failed' };
    });
  }

  var PROBLEM_TEXT = { 'no-host': 'noHost', 'no-text': 'noText', 'host-failed': 'hostFailed' };

  function renderView(root, route, enterprise, content) {
    // Help opens through the host: without a host (or on the enterprise edition) no link.
    var offerHelp = ns.host.available() && !enterprise;
    var context = { texts: texts, model: content && content.model, footerStart: offerHelp ? [helpLink(route)] : [] };
    if (route.view === 'guide') {
      return ns.guideView.render(root, context);
    }
    if (content.problem) {
      document.documentElement.setAttribute('data-problem', content.problem);
      return ns.pinyinView.renderProblem(root, context, texts.get(PROBLEM_TEXT[content.problem]));
    }
    return ns.pinyinView.render(root, context);
  }

  // Asks the host to fit the window to the dialog when its size differs from the last size
  // asked for. Resolves once the host has answered.
  function fitWindow() {
    var box = document.querySelector('.dialog').getBoundingClientRect();
    var size = { width: Math.ceil(box.width), height: Math.ceil(box.height) };
    if (!ns.host.available() || (askedSize && askedSize.width === size.width && askedSize.height === size.height)) {
      return Promise.resolve();
    }
    askedSize = size;
    return ns.host.call('changeSize', size).catch(function () {});
  }

  // Fits the window to the rendered view, then marks the view rendered: native tests wait
  // for that mark, never for load events.
  function finish(view, mine) {
    var fonts = document.fonts ? document.fonts.ready : Promise.resolve();
    fonts.then(function () {
      window.requestAnimationFrame(function () {
        var patience = new Promise(function (resolve) { window.setTimeout(resolve, RESIZE_PATIENCE_MS); });
        Promise.race([fitWindow(), patience]).then(function () {
          if (mine === generation) {
            document.documentElement.setAttribute('data-rendered', view);
          }
        });
      });
    });
  }

  // Should the content still change its size later (a reading that wraps the preview onto
  // another line, say), the window follows it.
  function followContentSize() {
    if (typeof window.ResizeObserver !== 'function') {
      return;
    }
    new window.ResizeObserver(function () {
      if (document.documentElement.hasAttribute('data-rendered')) {
        fitWindow();
      }
    }).observe(document.querySelector('.dialog'));
  }

  function show() {
    var route = parseRoute(window.location.hash);
    var mine = ++generation;
    var root = ns.dom.clear(document.getElementById('view'));
    current = null;
    document.documentElement.removeAttribute('data-rendered');
    document.documentElement.removeAttribute('data-problem');
    document.documentElement.setAttribute('data-from', route.from);
    var enterprise = ns.host.available() ? askEnterprise() : Promise.resolve(false);
    var content = route.view === 'guide' ? Promise.resolve(null) : askReadings();
    Promise.all([enterprise, content]).then(function (answers) {
      if (mine !== generation) {
        return;
      }
      document.documentElement.setAttribute('data-edition', answers[0] ? 'enterprise' : 'standard');
      current = renderView(root, route, answers[0], answers[1]);
      finish(route.view, mine);
    });
  }

  // Escape cancels everywhere. Enter confirms, except on a button or link, which Enter
  // activates itself (Cancel must still cancel).
  function onKey(event) {
    if (event.isComposing) {
      return;
    }
    if (event.key === 'Escape') {
      event.preventDefault();
      ns.host.closeWindow();
    } else if (event.key === 'Enter' && current) {
      if (event.target && event.target.closest && event.target.closest('button, a[href]')) {
        return;
      }
      event.preventDefault();
      current.confirm();
    }
  }

  function start() {
    texts = ns.strings.textsFor(ns.strings.languageOf(window.navigator.language));
    document.documentElement.lang = texts.language === 'en' ? 'en' : 'zh-CN';
    document.title = texts.get('title');
    document.getElementById('title').textContent = texts.get('title');
    var closeButton = document.getElementById('close');
    closeButton.setAttribute('aria-label', texts.get('close'));
    closeButton.setAttribute('title', texts.get('close'));
    closeButton.addEventListener('click', ns.host.closeWindow);
    // Capture, so Enter on a reading selector confirms instead of opening its list.
    window.addEventListener('keydown', onKey, true);
    window.addEventListener('hashchange', show);
    followContentSize();
    show();
  }

  start();
})(window.zphonetic = window.zphonetic || {});

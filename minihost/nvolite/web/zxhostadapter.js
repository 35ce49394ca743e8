// SPDX-License-Identifier: MIT
// The page's view of the host: window.zxHost.call(method, args) -> Promise of the method's result,
// and zxHost.openBrowser(url). The host runs this as the body of one function that also holds
// qwebchannel.js, so the page sees zxHost and nothing of the channel behind it.
var transport = window.qt && window.qt.webChannelTransport;
if (!transport)
    return;  // a page shown without a bridge
var bridge = new Promise(function (resolve) {
    new QWebChannel(transport, function (channel) { resolve(channel.objects.zxBridge); });
});
// Every call goes through the one native method, `call(method, argumentsJson)`, whose reply is
// {ok: true, result} or {ok: false, error}.
function call(method, args) {
    var json;
    try {
        json = JSON.stringify(args === undefined || args === null ? {} : args);
    } catch (e) {
        return Promise.reject(e);
    }
    return bridge.then(function (bridgeObject) {
        return new Promise(function (resolve, reject) {
            bridgeObject.call(String(method), json, function (reply) {
                if (reply && reply.ok)
                    resolve(reply.result === undefined ? null : reply.result);
                else
                    reject(new Error(reply && reply.error ? reply.error : 'the host did not answer'));
            });
        });
    });
}
var host = Object.freeze({
    call: call,
    // The bridge's signal openPromeBrowser(url), raised through the same native method.
    openBrowser: function (url) {
        return call('openPromeBrowser', {url: String(url)}).then(function () {});
    },
});
Object.defineProperty(window, 'zxHost', {value: host, enumerable: false, writable: false, configurable: false});

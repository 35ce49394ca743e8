// SPDX-License-Identifier: MIT
// The add-on's "PhoneticSymbol" dialog, opened without rendering its page and driven through its
// bridge exactly as the page would drive it.
#pragma once

#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QVariantMap>

namespace minihost {
class AddonSession;
}
namespace nvolite {
class ZxCommonWebWidget;
}

class DialogBridge {
public:
    DialogBridge() = default;
    ~DialogBridge() { finish(); }
    DialogBridge(const DialogBridge&) = delete;
    DialogBridge& operator=(const DialogBridge&) = delete;

    // Triggers "PhoneticSymbol" in `session`. False with errorString() set when no dialog opened
    // (the add-on's warning, when it showed one) or when it opened on its guide view (nothing
    // selected, or no tagging library).
    bool open(minihost::AddonSession& session);
    QString errorString() const { return m_error; }

    // Calls `method` with `arguments` (sent as the JSON object the page would send) and returns
    // the result text. False with errorString() set when the bridge answered an error.
    bool call(const QString& method, const QVariantMap& arguments, QString* result);

    // The page's part of the round trip. The entries of the readings document a getPhoneticText
    // `reply` holds ("result" -> "data" -> "phonetic"); false when its result is no document
    // (nothing to annotate).
    static bool readingEntries(const QString& reply, QJsonArray* entries);
    // What the page sends on confirm for `entries`: one item per entry with its index, its text
    // and its reading: the one `picks` holds for its index (taken out of `picks`), else the
    // entry's own, "" for a character without one.
    static QJsonArray confirmedItems(const QJsonArray& entries, QMap<int, QString>* picks);
    // Confirms `items` in layout `style` with brackets `bracket` (setPhoneticText). False with
    // errorString() set when the bridge answered an error.
    bool confirm(const QJsonArray& items, int style, int bracket);

    // Lets the window's queued close run, and closes it if it is still open.
    void finish();

private:
    nvolite::ZxCommonWebWidget* m_window = nullptr;
    QString m_error;
};

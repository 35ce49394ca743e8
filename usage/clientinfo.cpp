// SPDX-License-Identifier: MIT
#include "usage/clientinfo.h"

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "nvo/platform.h"
#include "nvo/zrt.h"

namespace {

// The identifier is read into a fixed buffer of 1024 units by the host's conventions: at most
// 1023 of them are looked at.
constexpr int kClientIdLimit = 1023;

// The registry's "infoGUID", else the common settings' one, cleaned. Without a registry object
// the settings are not consulted either: the identifier stays empty.
QString clientIdentifier() {
    ComPtr<IZRegistry> registry;
    if (FAILED(_nvo_CreateRegistry(ZRegScopeProduct, registry.put())) || !registry)
        return QString();
    BstrHolder value;
    QString id;
    if (SUCCEEDED(registry->QueryStringValue(registry->rootKey(), u"infoGUID", value.put())))
        id = value.toQString();
    if (id.isEmpty()) id = zrt::ZUWPCommonSettings().value(QStringLiteral("infoGUID")).toString();
    return id.isEmpty() ? id : cleanClientId(id);
}

QString hostVersion() {
    ComPtr<IZUserInformation> information;
    if (FAILED(_nvo_GetUserInformation(information.put())) || !information) return QString();
    BstrHolder version;
    if (FAILED(information->get_Version(version.put()))) return QString();
    return version.toQString();
}

}  // namespace

QString cleanClientId(const QString& id) {
    QString cleaned;
    const int length = qMin(id.size(), kClientIdLimit);
    cleaned.reserve(length);
    for (int i = 0; i < length; ++i) {
        const QChar c = id.at(i);
        if (c != QLatin1Char('-') && c != QLatin1Char('{') && c != QLatin1Char('}')) cleaned += c;
    }
    return cleaned;
}

ClientInfo ClientInfo::collect() {
    ClientInfo info;
    std::int32_t notSend = 0;
    if (SUCCEEDED(_nvo_RegQueryValueI(ZRegScopeProduct, nullptr, u"ICNotSend", 0, &notSend)))
        info.notSend = notSend;
    if (zrt::product::isDisableGlobalInfocollect(false)) info.notSend = 1;
    info.collectServer = zrt::serverinfo::infoCollectSvr();
    info.clientId = clientIdentifier();
    info.language = zrt::i18n::language(1, true);
    info.appVersion = hostVersion();
    return info;
}

const ClientInfo& ClientInfo::instance() {
    static const ClientInfo info = collect();
    return info;
}

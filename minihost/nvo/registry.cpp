// SPDX-License-Identifier: MIT
// The registry and the user information: small COM-like objects over the host's settings files.
#include "minihost/nvo/registry.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include "minihost/nvo/hoststore.h"
#include "nvo/platform.h"
#include "nvo/runtime.h"

namespace minihost {
namespace {

struct Availability {
    bool registry = true;
    bool userInformation = true;
};

Availability& availability() {
    static Availability value;
    return value;
}

int& liveObjects() {
    static int count = 0;
    return count;
}

const char* scopeGroup(int scope) {
    switch (scope) {
        case ZRegScopeUser:
            return "User";
        case ZRegScopeMachine:
            return "Machine";
        default:
            return nullptr;
    }
}

// The groups a scope reads, in order.
QStringList groupsOf(int scope) {
    if (scope == ZRegScopeProduct) return {QStringLiteral("User"), QStringLiteral("Machine")};
    if (const char* group = scopeGroup(scope)) return {QLatin1String(group)};
    return {};
}

QString keyPath(const QString& group, const QString& subKey, const QString& name) {
    QString path = group;
    QString sub = subKey;
    sub.replace(QLatin1Char('\\'), QLatin1Char('/'));
    for (const QString& part : sub.split(QLatin1Char('/'), Qt::SkipEmptyParts))
        path += QLatin1Char('/') + part;
    return path + QLatin1Char('/') + name;
}

// The first value of `name` the scope holds; invalid when absent.
QVariant readValue(int scope, const QString& subKey, const QString& name) {
    const QSettings store(registryPath(), QSettings::IniFormat);
    for (const QString& group : groupsOf(scope)) {
        const QVariant value = store.value(keyPath(group, subKey, name));
        if (value.isValid()) return value;
    }
    return {};
}

QString fromUtf16(const char16_t* text) {
    return text ? QString::fromUtf16(text, static_cast<int>(_Xu2_strlen(text))) : QString();
}

// Reference counting shared by the two objects.
template <typename Interface>
class Counted : public Interface {
public:
    Counted() { ++liveObjects(); }
    virtual ~Counted() { --liveObjects(); }
    std::uint32_t AddRef() override { return ++m_references; }
    std::uint32_t Release() override {
        const std::uint32_t left = --m_references;
        if (left == 0) delete this;
        return left;
    }

protected:
    HRESULT answer(REFIID iid, REFIID own, void** out) {
        if (!out) return E_POINTER;
        if (iid == IID_IUnknown || iid == own) {
            *out = static_cast<Interface*>(this);
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }

private:
    std::uint32_t m_references = 1;
};

class Registry final : public Counted<IZRegistry> {
public:
    explicit Registry(int scope) : m_scope(scope) {}
    HRESULT QueryInterface(REFIID iid, void** out) override {
        return answer(iid, IID_IZRegistry, out);
    }
    ZRegKey rootKey() override { return &m_scope; }
    HRESULT QueryStringValue(ZRegKey key, const char16_t* name, BSTR* value) override {
        if (!value) return E_POINTER;
        *value = nullptr;
        if (key != &m_scope || !name) return E_INVALIDARG;
        const QVariant read = readValue(m_scope, QString(), fromUtf16(name));
        if (!read.isValid()) return S_FALSE;
        const QString text = read.toString();
        *value = _XSysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()),
                                     static_cast<unsigned int>(text.size()));
        return *value ? S_OK : E_OUTOFMEMORY;
    }

private:
    int m_scope;
};

class UserInformation final : public Counted<IZUserInformation> {
public:
    HRESULT QueryInterface(REFIID iid, void** out) override {
        return answer(iid, IID_IZUserInformation, out);
    }
    HRESULT get_Version(BSTR* version) override {
        if (!version) return E_POINTER;
        QString text = hostSetting(QStringLiteral("product/version")).toString();
        if (text.isEmpty()) text = QCoreApplication::applicationVersion();
        if (text.isEmpty()) text = QStringLiteral(ZPHONETIC_VERSION);
        *version = _XSysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()),
                                       static_cast<unsigned int>(text.size()));
        return *version ? S_OK : E_OUTOFMEMORY;
    }
};

}  // namespace

void setRegistryValue(int scope, const QString& subKey, const QString& name,
                      const QVariant& value) {
    const char* group = scopeGroup(scope);
    if (!group) return;
    QSettings store(registryPath(), QSettings::IniFormat);
    const QString path = keyPath(QLatin1String(group), subKey, name);
    if (value.isValid())
        store.setValue(path, value);
    else
        store.remove(path);
    store.sync();
}

QString registryPath() {
    return QDir(configDirectory()).filePath(QStringLiteral("registry.ini"));
}

void setRegistryAvailable(bool available) {
    availability().registry = available;
}

void setUserInformationAvailable(bool available) {
    availability().userInformation = available;
}

int liveIdentityObjects() {
    return liveObjects();
}

}  // namespace minihost

extern "C" HRESULT _nvo_RegQueryValueI(std::int32_t scope, const char16_t* subKey,
                                       const char16_t* name, std::int32_t defaultValue,
                                       std::int32_t* value) {
    if (!value) return E_POINTER;
    *value = defaultValue;
    if (!name || minihost::groupsOf(scope).isEmpty()) return E_INVALIDARG;
    const QVariant read =
        minihost::readValue(scope, minihost::fromUtf16(subKey), minihost::fromUtf16(name));
    if (!read.isValid()) return S_FALSE;
    bool isInteger = false;
    const int number = read.toString().trimmed().toInt(&isInteger, 0);
    if (!isInteger) return S_FALSE;
    *value = number;
    return S_OK;
}

extern "C" HRESULT _nvo_CreateRegistry(std::int32_t scope, IZRegistry** registry) {
    if (!registry) return E_POINTER;
    *registry = nullptr;
    if (minihost::groupsOf(scope).isEmpty()) return E_INVALIDARG;
    if (!minihost::availability().registry) return E_FAIL;
    *registry = new minihost::Registry(scope);
    return S_OK;
}

extern "C" HRESULT _nvo_GetUserInformation(IZUserInformation** information) {
    if (!information) return E_POINTER;
    *information = nullptr;
    if (!minihost::availability().userInformation) return E_FAIL;
    *information = new minihost::UserInformation;
    return S_OK;
}

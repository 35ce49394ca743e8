// SPDX-License-Identifier: MIT
// The application, the core application and its services, the message box and the browser.
#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QUrl>

#include "minihost/nvo/zcoreapplication_p.h"
#include "minihost/nvo/zxapplication_p.h"
#include "nvo/zapplication.h"

namespace {

ZxApplication* app() {
    return qobject_cast<ZxApplication*>(QCoreApplication::instance());
}

// A service that counts its references and notes its destruction.
class CountingService final : public IUnknown {
public:
    explicit CountingService(bool* destroyed) : m_destroyed(destroyed) {}
    HRESULT QueryInterface(REFIID iid, void** out) override {
        if (iid != IID_IUnknown) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override {
        const std::uint32_t left = --references;
        if (left == 0) {
            *m_destroyed = true;
            delete this;
        }
        return left;
    }
    std::uint32_t references = 1;

private:
    bool* m_destroyed;
};

constexpr GUID kServiceA = {0x11111111, 0x2222, 0x3333, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr GUID kServiceB = {0x11111111, 0x2222, 0x3333, {1, 2, 3, 4, 5, 6, 7, 9}};

}  // namespace

TEST(Application, InstanceIsTheHostApplicationWithACoreApplication) {
    ASSERT_NE(app(), nullptr);
    EXPECT_NE(app()->coreApplication(), nullptr);
    EXPECT_EQ(app()->currentMainWindow(), nullptr);
    EXPECT_TRUE(app()->d_func()->headless());
}

TEST(Application, CurrentMainWindowIsForgottenWhenTheWindowGoes) {
    auto* window = new ZMainWindow;
    app()->d_func()->setCurrentMainWindow(window);
    EXPECT_EQ(app()->currentMainWindow(), window);
    delete window;
    EXPECT_EQ(app()->currentMainWindow(), nullptr);
}

TEST(CoreApplication, AnswersItsOwnInterfacesAndCountsReferences) {
    ZCoreApplication core;
    void* out = nullptr;
    ASSERT_EQ(core.QueryInterface(IID_IZApplication, &out), S_OK);
    EXPECT_EQ(out, static_cast<IZApplication*>(&core));
    EXPECT_EQ(core.d_func()->references, 1u);
    EXPECT_EQ(core.Release(), 0u);
    const GUID other = {0xDEADBEEF, 0, 0, {0}};
    EXPECT_EQ(core.QueryInterface(other, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(core.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(CoreApplication, ServicesAreHeldUntilUnregistered) {
    ZCoreApplication core;
    bool destroyed = false;
    auto* service = new CountingService(&destroyed);
    core.d_func()->registerService(kServiceA, service);
    EXPECT_EQ(service->references, 2u);
    service->Release();  // the host keeps the only reference now

    IUnknown* found = nullptr;
    ASSERT_EQ(core.QueryService(kServiceA, &found), S_OK);
    EXPECT_EQ(found, service);
    EXPECT_EQ(service->references, 2u);
    found->Release();

    EXPECT_EQ(core.QueryService(kServiceB, &found), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);

    core.d_func()->unregisterService(kServiceA);
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(core.QueryService(kServiceA, &found), E_NOINTERFACE);
}

TEST(CoreApplication, RegisteringTheSameServiceAgainKeepsItAlive) {
    ZCoreApplication core;
    bool destroyed = false;
    auto* service = new CountingService(&destroyed);
    core.d_func()->registerService(kServiceA, service);
    core.d_func()->registerService(kServiceA, service);
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(service->references, 2u);
    service->Release();
    core.d_func()->registerService(kServiceA, nullptr);  // null unregisters
    EXPECT_TRUE(destroyed);
}

TEST(CoreApplication, ServicesAreReleasedAtDestruction) {
    bool destroyedA = false;
    bool destroyedB = false;
    {
        ZCoreApplication core;
        auto* a = new CountingService(&destroyedA);
        auto* b = new CountingService(&destroyedB);
        core.d_func()->registerService(kServiceA, a);
        core.d_func()->registerService(kServiceB, b);
        a->Release();
        b->Release();
        EXPECT_FALSE(destroyedA);
    }
    EXPECT_TRUE(destroyedA);
    EXPECT_TRUE(destroyedB);
}

TEST(CoreApplication, TranslatorAndCollectorCanBeTakenAway) {
    ZCoreApplication core;
    EXPECT_NE(core.translator(), nullptr);
    EXPECT_NE(core.getDcInfo(), nullptr);
    core.d_func()->setTranslator(nullptr);
    core.d_func()->setDcInfo(nullptr);
    EXPECT_EQ(core.translator(), nullptr);
    EXPECT_EQ(core.getDcInfo(), nullptr);
}

TEST(CoreApplication, ReportsTheActiveViewItIsGiven) {
    ZCoreApplication core;
    EXPECT_EQ(core.activeView(), nullptr);
    auto* view = reinterpret_cast<slxoldapi::DocumentView*>(&core);  // only compared, never used
    core.d_func()->setActiveView(view);
    EXPECT_EQ(core.activeView(), view);
}

TEST(MessageBox, HeadlessHostRecordsTextAndFlagsAndAnswersTheFirstButton) {
    auto* d = app()->d_func();
    const int before = d->messages.size();
    EXPECT_EQ(app()->messageBox(QStringLiteral("please select one character at least"), 0x30), 1);
    EXPECT_EQ(app()->messageBox(QStringLiteral("sure?"), 0x24), 6);
    ASSERT_EQ(d->messages.size(), before + 2);
    EXPECT_EQ(d->messages.at(before).text, QStringLiteral("please select one character at least"));
    EXPECT_EQ(d->messages.at(before).flags, 0x30u);
    EXPECT_EQ(d->messages.at(before + 1).flags, 0x24u);
}

TEST(MessageBox, HeadlessAnswerCanBeChosen) {
    auto* d = app()->d_func();
    d->headlessAnswer = 7;
    EXPECT_EQ(app()->messageBox(QStringLiteral("sure?"), 0x24), 7);
    d->headlessAnswer = 0;
}

TEST(Browser, HeadlessHostRecordsUrlsInsteadOfOpeningThem) {
    auto* d = app()->d_func();
    const int before = d->openedUrls.size();
    EXPECT_TRUE(QDesktopServices::openUrl(QUrl(QStringLiteral("https://example.org/help"))));
    ASSERT_EQ(d->openedUrls.size(), before + 1);
    EXPECT_EQ(d->openedUrls.last(), QUrl(QStringLiteral("https://example.org/help")));
}

TEST(AppContext, HoldsItsArguments) {
    ZAppContext context;
    EXPECT_TRUE(context.arguments().isEmpty());
    context.setArgument(QStringLiteral("action"), QStringLiteral("PhoneticOneKey"));
    EXPECT_EQ(context.arguments().value(QStringLiteral("action")).toString(),
              QStringLiteral("PhoneticOneKey"));
    const ZAppContext copy({{QStringLiteral("action"), 3}});
    EXPECT_EQ(copy.arguments().value(QStringLiteral("action")).toInt(), 3);
    EXPECT_EQ(ZAppObj(QStringLiteral("btn")).commandId(), QStringLiteral("btn"));
}

// SPDX-License-Identifier: MIT
#include "minihost/nvo/hostreadingservice.h"

#include <atomic>
#include <cstring>

#include "nvo/readingservice.h"
#include "nvo/runtime.h"

namespace minihost {
namespace {

constexpr std::uint32_t kChinesePrc = 0x804;

std::atomic<int> g_liveServices{0};

// The record and its arrays in one task-memory block, as the interface promises.
ZReadingRecord* makeRecord(const QVector<HostReading>& readings) {
    qsizetype units = 0;
    for (const HostReading& reading : readings) units += reading.text.size();
    const auto count = static_cast<std::size_t>(readings.size());
    const std::size_t textBytes = (static_cast<std::size_t>(units) + 1) * sizeof(char16_t);
    // The text first, then the arrays, padded so they stay aligned.
    const std::size_t arraysAt = (sizeof(ZReadingRecord) + textBytes + alignof(std::int32_t) - 1) &
                                 ~(alignof(std::int32_t) - 1);
    auto* bytes = static_cast<unsigned char*>(
        _XCoTaskMemAlloc(arraysAt + count * (sizeof(std::uint32_t) + sizeof(std::int32_t))));
    if (!bytes) return nullptr;
    auto* record = reinterpret_cast<ZReadingRecord*>(bytes);
    record->outputLength = static_cast<std::int32_t>(units);
    record->output = reinterpret_cast<char16_t*>(bytes + sizeof(ZReadingRecord));
    record->reserved = nullptr;
    record->itemCount = static_cast<std::int32_t>(count);
    record->itemValues = reinterpret_cast<std::uint32_t*>(bytes + arraysAt);
    record->itemLengths = reinterpret_cast<std::int32_t*>(record->itemValues + count);
    char16_t* out = record->output;
    for (std::size_t i = 0; i < count; ++i) {
        const QString& text = readings[static_cast<int>(i)].text;
        std::memcpy(out, text.utf16(), static_cast<std::size_t>(text.size()) * sizeof(char16_t));
        out += text.size();
        record->itemValues[i] = static_cast<std::uint32_t>(readings[static_cast<int>(i)].covers);
        record->itemLengths[i] = static_cast<std::int32_t>(text.size());
    }
    *out = 0;
    return record;
}

class ReadingService final : public IZReadingTagger, public IZReadingHost {
public:
    explicit ReadingService(ReadingFunction tag) : m_tag(std::move(tag)) { ++g_liveServices; }
    ~ReadingService() { --g_liveServices; }

    HRESULT QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        if (iid == IID_IUnknown || iid == IID_IZReadingTagger)
            *out = static_cast<IZReadingTagger*>(this);
        else if (iid == IID_IZReadingHost)
            *out = static_cast<IZReadingHost*>(this);
        else {
            *out = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++m_references; }
    std::uint32_t Release() override {
        const std::uint32_t left = --m_references;
        if (left == 0) delete this;
        return left;
    }

    HRESULT TagText(const char16_t* text, std::int32_t length, std::uint32_t lcid,
                    ZReadingRecord** record) override {
        if (!record) return E_POINTER;
        *record = nullptr;
        if (length < 0 || lcid != kChinesePrc) return E_INVALIDARG;
        if (!text && length > 0) return E_POINTER;
        if (!m_tag) return E_FAIL;
        // Nothing may escape into the add-on: a failing function is a failing status.
        try {
            QVector<HostReading> readings;
            const QString input = QString::fromUtf16(text, length);
            if (!m_tag(input, readings) || readings.isEmpty()) return E_FAIL;
            *record = makeRecord(readings);
            return *record ? S_OK : E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }

private:
    ReadingFunction m_tag;
    std::uint32_t m_references = 1;
};

}  // namespace

IUnknown* createReadingService(ReadingFunction tag) {
    return static_cast<IZReadingTagger*>(new ReadingService(std::move(tag)));
}

int liveReadingServices() {
    return g_liveServices.load();
}

}  // namespace minihost

// SPDX-License-Identifier: MIT
// The host's reading service: pinyin for Chinese text, offered by the core application's
// service lookup, and the interface the host hands to a tagging library when it loads one.
#pragma once

#include <cstdint>

#include "nvo/com.h"

// Service id of the reading service: {7E2990D6-E832-4E5F-8BAE-1E1CDD53622B}.
inline constexpr GUID SID_ZReadingService = {
    0x7E2990D6, 0xE832, 0x4E5F, {0x8B, 0xAE, 0x1E, 0x1C, 0xDD, 0x53, 0x62, 0x2B}};
// The service's tagging interface: {C33D3137-746F-44CE-9B94-56EEFC7868D7}.
inline constexpr GUID IID_IZReadingTagger = {
    0xC33D3137, 0x746F, 0x44CE, {0x9B, 0x94, 0x56, 0xEE, 0xFC, 0x78, 0x68, 0xD7}};
// The interface handed to a tagging library's LoadPinYinLibrary:
// {7598AE09-EAAC-4A2F-8F72-7C754BC876E8}.
inline constexpr GUID IID_IZReadingHost = {
    0x7598AE09, 0xEAAC, 0x4A2F, {0x8F, 0x72, 0x7C, 0x75, 0x4B, 0xC8, 0x76, 0xE8}};

// The answer of IZReadingTagger::TagText: one task-memory block (header, then the arrays), freed
// as a whole with _XCoTaskMemFree by the receiver.
struct ZReadingRecord {
    std::int32_t outputLength;  // units in `output`, its NUL not counted
    char16_t* output;           // the readings, one after the other without separators
    void* reserved;             // always null
    std::int32_t itemCount;     // readings in `output`
    std::uint32_t* itemValues;  // per reading: how many input characters it covers
    std::int32_t* itemLengths;  // per reading: its length in `output`
};

struct IZReadingTagger : IUnknown {
    // Tags `length` units of `text` (locale `lcid`, 0x804 = Chinese (PRC)): one reading per
    // input character, in context. S_OK with a new record in *record; a negative status with
    // *record null on failure (no readings for the text, bad arguments).
    virtual HRESULT TagText(const char16_t* text, std::int32_t length, std::uint32_t lcid,
                            ZReadingRecord** record) = 0;
};

// What a tagging library may ask of the host that loads it. It adds nothing to IUnknown yet;
// a library that needs nothing from its host may ignore it.
struct IZReadingHost : IUnknown {};

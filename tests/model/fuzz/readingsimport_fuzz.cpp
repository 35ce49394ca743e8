// SPDX-License-Identifier: MIT
// Fuzzes the readings import: any text the page might send as "phonetic" is read without a crash
// or a leak, and the other arguments are read as they always are.
#include <QMap>
#include <QString>
#include <QVariant>
#include <cstddef>
#include <cstdint>

#include "model/phonetictextimport.h"

namespace {

void check(bool condition) {
    if (!condition) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QMap<QString, QVariant> arguments;
    arguments.insert(QStringLiteral("styleType"), QStringLiteral("2"));
    arguments.insert(QStringLiteral("phonetic"), text);
    const PhoneticImport imported = importPhoneticText(arguments);
    check(imported.styleType == 2);
    check(imported.bracketType == -1);
    return 0;
}

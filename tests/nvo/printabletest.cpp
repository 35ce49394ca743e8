// SPDX-License-Identifier: MIT
// What host programs print of a file's text: control characters and the characters that reorder a
// line are escaped, everything else is kept.
#include <gtest/gtest.h>

#include "minihost/nvo/printable.h"
#include "qtprinters.h"

namespace {

using minihost::printable;

TEST(Printable, EscapesControlCharactersAndReorderingOnes) {
    EXPECT_EQ(printable(QStringLiteral("\x1b[2J\x1b]52;c;aGk=\a")),
              QStringLiteral("\\x1b[2J\\x1b]52;c;aGk=\\x07"));
    EXPECT_EQ(printable(QString::fromUtf16(u"a\tb\nc\rd\u007f\u0085\u009b")),
              QStringLiteral("a\\x09b\\x0ac\\x0dd\\x7f\\x85\\x9b"));
    EXPECT_EQ(printable(QString::fromUtf16(u"txt.\u202eexe\u2066\u2069\u202a")),
              QStringLiteral("txt.\\u202eexe\\u2066\\u2069\\u202a"));
    EXPECT_EQ(printable(QString(QChar(0))), QStringLiteral("\\x00"));
}

TEST(Printable, KeepsEverythingElse) {
    const QString text = QString::fromUtf16(u"银行 yín háng, \\x1b \"q\" \U0001F600 \u00a0\u3000");
    EXPECT_EQ(printable(text), text);
    EXPECT_EQ(printable(QString()), QString());
}

}  // namespace

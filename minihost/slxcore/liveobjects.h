// SPDX-License-Identifier: MIT
// What the stand-in object model lets tests check about object lifetimes: every object it hands
// out is counted while a client holds a reference to it, so "nothing leaked, nothing released
// twice" is a number a test can compare with zero.
#pragma once

#include <QStringList>
#include <vector>

#include "hostexport.h"
#include "nvo/com.h"

namespace minihost {

// References held by clients right now, over every object of every open deck: an object handed
// out through an out-pointer counts one, each AddRef one more, each Release one less. The view
// and its selection object, which the host itself owns, count only the extra references clients
// took on them. Zero after every command that released what it obtained.
ZHOST_API int liveObjectCount();
// The objects behind liveObjectCount(), in creation order (not AddRef'd): for a test to take
// over a reference its subject dropped by design.
ZHOST_API std::vector<IUnknown*> liveObjects();
// Their kinds, in the same order ("TextFrame", "TextRange", ...).
ZHOST_API QStringList liveObjectKinds();
// Release() calls made on an object whose clients held no reference: each one is a bug of the
// caller. Counted instead of crashing, so a test can report it.
ZHOST_API int overReleaseCount();

}  // namespace minihost

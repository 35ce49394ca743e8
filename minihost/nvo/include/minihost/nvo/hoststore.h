// SPDX-License-Identifier: MIT
// Where the stand-in host keeps its files, and its settings store.
//
// Everything the host writes goes under one home: the environment variable ZPHONETIC_HOME when
// set (tests and CI point it into the build tree), else the user's standard configuration and
// data locations. Host programs and tests may also set the home directly.
//   <config>/common.ini     the product's common settings (zrt::ZUWPCommonSettings) and the
//                           host's own settings (directories, features, language, product)
//   <config>/registry.ini   the registry (_nvo_RegQueryValueI, _nvo_CreateRegistry)
//   <data>/usage.log        the usage collector's log, one JSON object per line
#pragma once

#include <QString>
#include <QVariant>

#include "hostexport.h"

namespace minihost {

// Sets the home directory (config = <home>/config, data = <home>/data); an empty path goes
// back to the environment and the standard locations.
ZHOST_API void setHomeDirectory(const QString& path);
// <home>/config, or the standard configuration location + "/zphonetic". Not created here.
ZHOST_API QString configDirectory();
// <home>/data, or the standard data location + "/zphonetic". Not created here.
ZHOST_API QString dataDirectory();

// The path of the common settings file.
ZHOST_API QString commonSettingsPath();

// A host setting from the common settings file ("group/key"); an invalid QVariant when absent.
ZHOST_API QVariant hostSetting(const QString& key);
// Writes a host setting; an invalid `value` removes it. The file is written at once.
ZHOST_API void setHostSetting(const QString& key, const QVariant& value);
// How many settings this process has written so far: what the host keeps of a setting it reads
// often is read again when this changed.
unsigned hostSettingChanges();

}  // namespace minihost

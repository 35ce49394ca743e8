// SPDX-License-Identifier: MIT
// The stand-in host's configurable answers: feature switches, directories and the scale factor.
// Host programs and tests set them; the add-on sees them only through the host's functions
// (_nvo_QueryFeatureState, _nvo_GetDirInfo, ZLiteStyle::dpiScaled).
#pragma once

#include <QString>
#include <cstdint>

#include "hostexport.h"
#include "nvo/platform.h"  // the feature and directory ids: ZFeatureId, ZDirId

namespace minihost {

// Feature state: what was set here, else the host setting "features/taggingLibrary" (for
// ZFeatureTaggingLibrary), else on for ZFeatureTaggingLibrary and off for any other. The setting
// is read once, and again after this process wrote a setting or reset the features.
ZHOST_API void setFeatureState(std::uint32_t featureId, bool on);
ZHOST_API bool featureState(std::uint32_t featureId);
// Forgets what was set for every feature, and what was read of the settings.
ZHOST_API void resetFeatureStates();

// A directory as _nvo_GetDirInfo reports it, exactly as given (a trailing separator is kept).
// Without a value set here: the environment (ZPHONETIC_TAGGER_DIR for 2, ZPHONETIC_DICT_DIR for
// 27), else the host settings ("directories/tagger", "directories/dictionaries"), else next to
// the host programs: <bin>/../lib/zphonetic and <bin>/../share/zphonetic/dict.
// Unknown ids give an empty string.
ZHOST_API void setDirectory(int dirId, const QString& path);
ZHOST_API QString directory(int dirId);
// Forgets what was set for every directory.
ZHOST_API void resetDirectories();

// What a host program checks before a command that needs readings: the tagging library
// libPinyinTagger.so in directory 2 (only while feature 0x1000018 is on: off, the host's reading
// service answers) and the dictionaries Pinyin.dic, firrule.dic and secrule.dic in directory 27,
// each a readable file. An empty string when they are all there; else the path of the first
// missing one, and in `*problem` what it is and the fix, which depends on where the directory
// came from, e.g. "the tagging library is missing (set by ZPHONETIC_TAGGER_DIR): point
// ZPHONETIC_TAGGER_DIR at the directory that holds it, or unset it".
ZHOST_API QString missingReadingFile(QString* problem);

// ZLiteStyle::dpiScaled multiplies by this: what was set here, else the host setting
// "ui/scaleFactor", else 1.
ZHOST_API void setScaleFactor(double factor);
ZHOST_API double scaleFactor();
// Forgets the factor set here.
ZHOST_API void resetScaleFactor();

}  // namespace minihost

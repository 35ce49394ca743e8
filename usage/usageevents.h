// SPDX-License-Identifier: MIT
// Counting the add-on's commands in the host's usage collector.
#pragma once

#include <QString>

// Posts one usage event with the single parameter `key` = `value`, named after the current
// ribbon tab: "nvo_phoneticsymbol_home" (Home) or "nvo_phoneticsymbol_texttool" (Text Tool),
// with 0, 0, probability 1 and true. Nothing is posted from any other tab or without a
// collector; nothing is ever reported. The two callers post ("action", "symbol") and
// ("action", "onekey").
void postUsageEvent(const QString& key, const QString& value);

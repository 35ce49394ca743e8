// SPDX-License-Identifier: MIT
// The subcommands of zphonetic. Each runs inside the headless host application that main()
// made, takes the arguments after its name, and returns the process's exit status.
#pragma once

#include <QString>
#include <QStringList>

#include "reporterror.h"

// zphonetic trigger ACTION [--tab TAB_ID]
int runTrigger(const QStringList& arguments);
// zphonetic show DECK: every slide with its shapes (each with the id that selects it), their
// boxes, texts and formats.
int runShow(const QStringList& arguments);
// zphonetic readings TEXT [--json]
int runReadings(const QStringList& arguments);
// zphonetic apply DECK -o OUT [--slide N] [--select SELECTION] --style N --bracket N [--pick
// I=READING]...
int runApply(const QStringList& arguments);
// zphonetic onekey DECK -o OUT [--slide N] [--select SELECTION] [--all-slides]
int runOneKey(const QStringList& arguments);
// zphonetic words list|add WORD READING...|remove WORD|check|tones [TONES]|path: the user's own
// readings.
int runWords(const QStringList& arguments);
// zphonetic render DECK -o DIR [--slide N] [--width PX]: slides drawn to DIR/slide-N.png.
int runRender(const QStringList& arguments);

// SPDX-License-Identifier: MIT
// Watching the events of a widget and of everything inside it, present and future: a web view
// creates the widget that receives the mouse only once its page loads.
#pragma once

class QEvent;
class QObject;

// Installs `filter` as an event filter on `root` and on all of its descendants.
void watchDescendants(QObject* root, QObject* filter);
// To be called from `filter`'s eventFilter with every event: a child added to a watched object
// gets watched too.
void watchNewChild(QEvent* event, QObject* filter);

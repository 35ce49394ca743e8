// SPDX-License-Identifier: MIT
#include "minihost/nvolite/descendantevents.h"

#include <QChildEvent>
#include <QObject>

void watchDescendants(QObject* root, QObject* filter) {
    // Installing twice would deliver events twice; removing first makes it idempotent.
    root->removeEventFilter(filter);
    root->installEventFilter(filter);
    for (QObject* child : root->children()) watchDescendants(child, filter);
}

void watchNewChild(QEvent* event, QObject* filter) {
    if (event->type() == QEvent::ChildAdded)
        watchDescendants(static_cast<QChildEvent*>(event)->child(), filter);
}

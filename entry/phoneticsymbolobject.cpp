// SPDX-License-Identifier: MIT
#include "entry/phoneticsymbolobject.h"

#include <QMap>
#include <QVariant>

#include "model/phoneticsymbolmodel.h"
#include "nvo/zapplication.h"

ZxPhoneticSymbolObject::ZxPhoneticSymbolObject() : QObject(nullptr) {}

ZxPhoneticSymbolObject::~ZxPhoneticSymbolObject() {
    ZPhoneticSymbolModel::instance()->releaseModel();
}

void ZxPhoneticSymbolObject::trigger(ZAppObj* obj, ZAppContext* context) {
    dispatchCommand(obj, context);
}

void dispatchCommand(ZAppObj* /*obj*/, ZAppContext* context) {
    if (!context) return;
    const QMap<QString, QVariant> arguments = context->arguments();
    const QString action = QStringLiteral("action");
    if (arguments.value(action) == QVariant(QStringLiteral("PhoneticSymbol"))) {
        ZPhoneticSymbolModel::instance()->openPhoneticDialog();
        return;
    }
    if (arguments.value(action) == QVariant(QStringLiteral("PhoneticOneKey")))
        ZPhoneticSymbolModel::instance()->applyOneKey();
}

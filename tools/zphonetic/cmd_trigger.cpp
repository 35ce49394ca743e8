// SPDX-License-Identifier: MIT
// zphonetic trigger: one add-on command in a host with a ribbon and no presentation, then the
// usage events it posted (the host prints the messages it shows as they come).
#include <QMainWindow>
#include <cstdio>

#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/printable.h"
#include "nvo/ribbon.h"
#include "subcommands.h"

namespace {

void printHelp() {
    std::printf(
        "Usage: zphonetic trigger ACTION [--tab TAB_ID]\n\n"
        "Loads the add-on, runs its command ACTION (\"PhoneticOneKey\" or \"PhoneticSymbol\";\n"
        "anything else is ignored by the add-on) with the ribbon tab TAB_ID current (default\n"
        "CT_Home; the ribbon has CT_Home, CT_Insert and CT_TextTool), destroys the entry object,\n"
        "and prints the usage events posted. Messages the add-on shows go to standard error.\n");
}

}  // namespace

int runTrigger(const QStringList& arguments) {
    QString action;
    QString tab = QStringLiteral("CT_Home");
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--help")) {
            printHelp();
            return 0;
        }
        if (argument == QLatin1String("--tab")) {
            if (i + 1 >= arguments.size())
                return reportError(argument, QStringLiteral("needs a tab id"));
            tab = arguments.at(++i);
        } else if (action.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            action = argument;
        } else {
            return reportError(argument, QStringLiteral("unexpected argument"));
        }
    }
    if (action.isEmpty())
        return reportError(QStringLiteral("trigger"), QStringLiteral("needs an ACTION"));

    ZMainWindow window;
    minihost::buildRibbon(&window, {QStringLiteral("CT_Home"), QStringLiteral("CT_Insert"),
                                    QStringLiteral("CT_TextTool")});
    if (!minihost::setCurrentTabById(&window, tab))
        return reportError(tab,
                           QStringLiteral("no such ribbon tab (CT_Home, CT_Insert, CT_TextTool)"));
    minihost::setCurrentMainWindow(&window);

    {
        minihost::AddonSession session;
        if (!session.open()) return reportError(QStringLiteral("add-on"), session.errorString());
        if (!session.trigger(action))
            return reportError(QStringLiteral("add-on"),
                               QStringLiteral("the entry object has no trigger method"));
    }
    minihost::setCurrentMainWindow(nullptr);

    for (const UsageEvent& event : minihost::usageEvents()) {
        std::printf("usage event: %s", minihost::printable(event.name).toUtf8().constData());
        for (auto it = event.parameters.cbegin(); it != event.parameters.cend(); ++it)
            std::printf(" %s=%s", minihost::printable(it.key()).toUtf8().constData(),
                        minihost::printable(it.value()).toUtf8().constData());
        std::printf("\n");
    }
    return 0;
}

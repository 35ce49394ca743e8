// SPDX-License-Identifier: MIT
// The studio's window over one deck, as a person uses it, without a screen: opens DECK, waits
// until its first slide and every thumbnail are drawn, runs "Pinyin at Once" on the shapes with
// text of the first slide (when it has any), and saves the deck to OUT. What the window would show
// in a message box is printed on standard error, one line each.
//
//   hostile_studio DECK OUT      exit 0 when OUT was written, 1 when the deck was refused
#include <cstdio>

#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/printable.h"
#include "minihost/nvo/taggerreadings.h"
#include "minihost/slxcore/deck.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"
#include "slidethumbnails.h"
#include "slideview.h"
#include "studiowindow.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: hostile_studio DECK OUT\n");
        return 2;
    }
    ZxApplication app(argc, argv);
    minihost::setShowMessageBoxes(false);
    minihost::offerEngineReadingService();
    const QStringList arguments = ZxApplication::arguments();
    int status = 1;
    {
        StudioWindow window;
        window.resize(1200, 800);
        window.show();
        if (window.openFile(arguments.at(1))) {
            // The thumbnails are drawn a few at a time from the event loop.
            while (window.thumbnails()->pending() > 0)
                ZxApplication::processEvents(QEventLoop::AllEvents, 50);
            window.slideView()->grab();  // the slide as the view draws it
            minihost::Deck& deck = *window.deck();
            QList<int> withText;
            for (const minihost::ShapeInfo& shape : deck.shapes(1))
                if (shape.hasTextFrame && !shape.text.isEmpty()) withText << shape.id;
            if (!withText.isEmpty() && deck.selectShapes(withText)) {
                window.runCommand(QString::fromLatin1(StudioWindow::kPhoneticOneKey));
                window.slideView()->grab();
            }
            if (window.saveTo(arguments.at(2))) {
                std::printf("wrote %s\n",
                            minihost::printable(arguments.at(2)).toUtf8().constData());
                status = 0;
            }
        }
        minihost::setUnshownMessageBoxAnswer(7);  // closing: "No" to saving again
    }
    minihost::unregisterService(SID_ZReadingService);
    return status;
}

// SPDX-License-Identifier: MIT
// "Open in the browser" in a headless host.
#include <QDesktopServices>
#include <QUrl>
#include <gtest/gtest.h>

#include "minihost/nvolite/webhost.h"

namespace {

TEST(UrlRecorder, RecordsWebUrlsInOrder) {
    minihost::recordOpenedUrls(false);
    minihost::clearOpenedUrls();
    EXPECT_TRUE(QDesktopServices::openUrl(QUrl("https://help.example.invalid/p?from=home&app_type=client")));
    EXPECT_TRUE(QDesktopServices::openUrl(QUrl("http://help.example.invalid/q")));
    EXPECT_EQ(minihost::openedUrls(), (QStringList{"https://help.example.invalid/p?from=home&app_type=client",
                                                   "http://help.example.invalid/q"}));
    minihost::clearOpenedUrls();
    EXPECT_TRUE(minihost::openedUrls().isEmpty());
}

TEST(UrlRecorder, PrintsWhenAsked) {
    minihost::recordOpenedUrls(true);
    testing::internal::CaptureStderr();
    QDesktopServices::openUrl(QUrl("https://help.example.invalid/r"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "open in browser: https://help.example.invalid/r\n");
    minihost::recordOpenedUrls(false);
}

}  // namespace

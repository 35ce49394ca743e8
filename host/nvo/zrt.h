// SPDX-License-Identifier: MIT
// Queries about the product, its servers and its language, and the host's common settings.
#pragma once

#include <QSettings>
#include <QString>

#include "hostexport.h"

namespace zrt {

namespace product {
// True for an enterprise edition of the product.
ZHOST_API bool isEnterprise();
// True when usage-data collection is switched off for the whole installation; `defaultValue`
// is answered when the installation does not say.
ZHOST_API bool isDisableGlobalInfocollect(bool defaultValue);
}  // namespace product

namespace serverinfo {
// The address of the usage-data collection server (empty when there is none).
ZHOST_API QString infoCollectSvr();
}  // namespace serverinfo

namespace i18n {
// The user-interface language. `format` 1 gives the "ll_CC" form ("zh_CN"); 0 the "ll" form.
// With `fallback` true an unset language gives the system's.
ZHOST_API QString language(int format, bool fallback);
}  // namespace i18n

// The settings shared by every program of the product (an INI file in the host's configuration
// directory).
class ZHOST_API ZUWPCommonSettings : public QSettings {
    Q_OBJECT
public:
    explicit ZUWPCommonSettings(QObject* parent = nullptr);
    ~ZUWPCommonSettings() override;
};

}  // namespace zrt

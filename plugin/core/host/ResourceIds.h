#pragma once

// Ids of the module's resources. The resource compiler reads this file too, so it may hold only macros.

#define IDR_LAYOUTS_XML 101      // Type XML: dialog layouts
#define IDR_STRINGS_XML 102      // Type XML: English localization table
#define IDR_SETTINGS_CAB_XML 103 // Type XML: template of the plug-in's settings
#define IDR_ICON_16_PNG 104      // Type PNG, as are the next three
#define IDR_ICON_24_PNG 105
#define IDR_ICON_32_PNG 106
#define IDR_ICON_48_PNG 107
#define IDR_ACCOUNT_DATA_CAB_XML 108                // Type XML: template of a saved account
#define IDR_OPEN_SAVE_DIALOG_PARAMETERS_CAB_XML 109 // Type XML: template of a dialog's parameters

#include "ui/settings/IndexSettingsView.h"

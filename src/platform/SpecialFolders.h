#pragma once

#include <QString>

// The special folders of the program, each with a trailing separator.
// Tests and packagers move them through the environment: HOME and XDG_* as
// usual, QM_COMMON_APPDATA_DIR for the all-users folder, QM_PROGRAM_DIR for
// the program's own folder.
namespace SpecialFolders {

QString roamingAppData(); // per user, roaming: XDG config home
QString localAppData();   // per user, this machine: XDG data home
QString commonAppData();  // all users: /var/lib
QString myDocuments();    // the XDG documents folder
QString programFolder();  // the executable's folder

} // namespace SpecialFolders

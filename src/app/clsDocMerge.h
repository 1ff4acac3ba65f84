#pragma once

#include <QString>

class errorClass;

// The automation object a host creates. The host sets these properties
// before its opening call; the D-Bus adaptor forwards them here.
class clsDocMerge {
public:
    errorClass* errorObject = nullptr;
    QString DatabaseLocation;
    QString AppWorkingDataFolder;
    int userID = 0;
    short currentProvince = 3;
};

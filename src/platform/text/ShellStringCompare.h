#pragma once

#include <QStringView>

// The shell's "logical" string order: case is ignored and runs of decimal
// digits compare by their numeric value, so "file9" < "File10". Equal
// values written with different leading zeros order the longer run first,
// as the platform call does. Returns -1, 0 or 1.
int StrCmpLogicalW(QStringView a, QStringView b);

#pragma once

#include <QByteArray>
#include <QString>

// The program's own binary resources, addressed by number and type as the
// word list ("CUSTOM" 101) is.
inline constexpr int kWordListResourceId = 101;
inline constexpr char kWordListResourceType[] = "CUSTOM";

// The bytes of a resource; throws QmError 326 when the program has no such
// resource.
QByteArray loadResourceBytes(int id, const QString& type);

// Writes the resource's bytes to `file`, whole, through a temporary file.
// Throws QmError 326 for an unknown resource and PathFileAccessError when
// the file cannot be written (a missing folder, no permission).
void buildFileFromResource(const QString& file, int id, const QString& type);

#pragma once

#include "context/DocumentKinds.h"

#include <QString>

// The document vault: one folder per client below a root, remembered in
// ClientDocumentStorage (paths relative to the root), and the names of
// merged files. Every function takes the vault root; an empty root means
// the working folders' vault root (app().workingFolders).
//
// Without a database connection the folder functions return an empty
// string. A folder that cannot be made raises QmError PathNotFound. A
// stored folder that resolves outside the root raises QmError
// PathFileAccessError and nothing is written. A new folder takes the client's
// cleaned name, or "Name (2)", "Name (3)"... when another client's row
// already holds that name.

QString getBusinessClientDocFolder(int clientDataID, const QString& root = QString());
QString getPersonalClientDocFolder(int contactID, const QString& root = QString());
QString getMiscAppointmentsFolder(const QString& root = QString());

// Raises QmError PathFileAccessError unless `path` lies strictly below
// `root` once "." and ".." are resolved.
void requireInsideVault(const QString& path, const QString& root);

// "mmm d yyyy - " + the template's name without its "Merge Template" or
// "Merge Results" prefixes, with the extension of the document kind.
QString parseMergeFileName(const QString& name, int fileSaveType, int documentType,
                           InformationKind informationType);

// A client's name made usable as a single folder name: characters that no
// file system takes and path separators become "_", leading and trailing
// blanks and dots go; an empty result becomes "_".
QString cleanFolderName(const QString& name);

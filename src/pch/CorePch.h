#pragma once

// Headers nearly every file of the core reads, parsed once per build.
#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QVariant>
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#pragma once

#include <QMetaType>

// What kind of number a value from a driver holds, by its type: drivers
// give integer columns as any of several integer types.
inline bool isWholeNumberTypeId(int typeId) {
    switch (typeId) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

inline bool isNumberTypeId(int typeId) {
    return isWholeNumberTypeId(typeId) || typeId == QMetaType::Double || typeId == QMetaType::Float;
}

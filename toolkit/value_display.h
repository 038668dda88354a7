#pragma once
// The text a value shows under a column's settings, the same in the grid, its footer and an export.

#include "edit_properties.h"

class TFIBField;

class TValueDisplay
{
public:
    // `field` gives the plain kind its own display format; it may be null.
    static QString Text(const TEditProperties &properties, const TFIBField *field, const QVariant &value);
    // Whether values of this column line up to the right.
    static bool AlignsRight(const TEditProperties &properties, const TFIBField *field);
};

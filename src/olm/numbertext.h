#ifndef TAVOLINE_OLM_NUMBERTEXT_H
#define TAVOLINE_OLM_NUMBERTEXT_H

#include <QString>

/// A number as the viewer shows and writes it: up to six significant digits, in the shorter of the fixed and the
/// exponent form.
inline QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

#endif

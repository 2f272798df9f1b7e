// KORXProperties.h
//
// A set of named text values in insertion order: "name=value" entries, or names and values
// given apart. Names compare exactly (case and all); setting a name that is already there
// replaces its value in place. Copies own copies. KORXEnvironment derives from it.
#ifndef KORX_KORXPROPERTIES_H
#define KORX_KORXPROPERTIES_H

#include <korx/KORIResult.h>
#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>
#include <korx/KORXString.h>

class KORX_API KORXProperties {
public:
    KORXProperties();
    KORXProperties(const KORXProperties& other);
    KORXProperties& operator=(const KORXProperties& other);
    virtual ~KORXProperties();

    /// Splits entry at its first '=': the text before is the name, everything after (further
    /// '=' included) the value. 0x1000001, and nothing stored, when entry holds no '='.
    virtual KORIResult Set(const KORXString& entry);
    /// Replaces the value of name when present, else appends. Always 0.
    virtual KORIResult Set(const KORXString& name, const KORXString& value);
    /// 0x1000001, value untouched, when name is absent.
    virtual KORIResult Get(const KORXString& name, KORXString& value) const;
    /// The entry at index (insertion order); 0x1000001, both untouched, outside 0 .. count - 1.
    virtual KORIResult Get(int index, KORXString& name, KORXString& value) const;
    virtual int GetCount() const;

private:
    int IndexOf(const KORXString& name) const;

    KORXDynamicArray<KORXString> m_names;
    KORXDynamicArray<KORXString> m_values;  // m_values[i] belongs to m_names[i]
};

#endif

// Gk_Observer.h
//
// The base of the objects that observe a document: each kind of observer answers a type value
// so that the document can tell them apart. The base answers 0.
#ifndef KORX_GK_OBSERVER_H
#define KORX_GK_OBSERVER_H

#include <korx/KORXExport.h>

class KORX_API Gk_Observer {
public:
    Gk_Observer() = default;
    Gk_Observer(const Gk_Observer&) = default;
    Gk_Observer& operator=(const Gk_Observer&) = default;
    virtual ~Gk_Observer();

    virtual int getType();
};

#endif

// KORXReferenceCount.h
//
// KORXReferenceCount is an intrusive reference count: an object deriving from it is deleted by
// the release that takes its count to zero. KORXReferenceHandle<T> holds one reference to a T
// and shares it on copy, so the object lives as long as some handle holds it.
#ifndef KORX_KORXREFERENCECOUNT_H
#define KORX_KORXREFERENCECOUNT_H

#include <korx/KORXExport.h>

#include <cstdint>

class KORX_API KORXReferenceCount {
public:
    KORXReferenceCount() : m_count(0) {}
    /// A copy starts without references of its own.
    KORXReferenceCount(const KORXReferenceCount&) : m_count(0) {}
    KORXReferenceCount& operator=(const KORXReferenceCount&) { return *this; }

    virtual void increment() { ++m_count; }
    /// Deletes the object when the count reaches zero.
    virtual void decrement() {
        if (--m_count <= 0)
            delete this;
    }
    int referenceCount() const { return m_count; }

protected:
    virtual ~KORXReferenceCount() = default;

private:
    int32_t m_count;
};

template <class T> class KORXReferenceHandle {
public:
    KORXReferenceHandle() : m_object(nullptr) {}
    /// Takes a reference to object (which may be null).
    KORXReferenceHandle(T* object) : m_object(object) { acquire(); }
    KORXReferenceHandle(const KORXReferenceHandle& other) : m_object(other.m_object) {
        acquire();
    }
    ~KORXReferenceHandle() { release(); }

    KORXReferenceHandle& operator=(const KORXReferenceHandle& other) {
        if (m_object != other.m_object) {
            T* previous = m_object;
            m_object = other.m_object;
            acquire();
            if (previous != nullptr)
                previous->decrement();
        }
        return *this;
    }

    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    operator T*() const { return m_object; }
    T* get() const { return m_object; }

    bool operator==(const KORXReferenceHandle& other) const { return m_object == other.m_object; }
    bool operator!=(const KORXReferenceHandle& other) const { return m_object != other.m_object; }
    bool operator<(const KORXReferenceHandle& other) const { return m_object < other.m_object; }

private:
    void acquire() {
        if (m_object != nullptr)
            m_object->increment();
    }
    void release() {
        if (m_object != nullptr)
            m_object->decrement();
        m_object = nullptr;
    }

    T* m_object;
};

#endif

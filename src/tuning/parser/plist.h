// The store's growable array: grows one slot at a time, out-of-range access yields a default element.
#ifndef AECORE_TUNING_PARSER_PLIST_H
#define AECORE_TUNING_PARSER_PLIST_H

#include <new>

#include "aecore/aecore_types.h"

template <typename T>
class PList
{
public:
    PList() = default;
    ~PList() { delete[] m_list; }

    PList(const PList& other) { CopyFrom(other); }
    PList& operator=(const PList& other)
    {
        if (this != &other)
        {
            Clear();
            CopyFrom(other);
        }
        return *this;
    }

    // Appends; false only if no memory was left.
    bool Add(const T& item) { return Insert(m_count, item); }

    bool Insert(UINT32 index, const T& item)
    {
        if (index > m_count)
        {
            index = m_count;
        }
        if (m_count == m_bufCnt)
        {
            T* pList = new (std::nothrow) T[m_bufCnt + 1]();
            if (nullptr == pList)
            {
                return false;
            }
            for (UINT32 i = 0; i < m_count; i++)
            {
                pList[i] = m_list[i];
            }
            delete[] m_list;
            m_list = pList;
            m_bufCnt++;
        }
        for (UINT32 i = m_count; i > index; i--)
        {
            m_list[i] = m_list[i - 1];
        }
        m_list[index] = item;
        m_count++;
        return true;
    }

    bool Remove(const T& item)
    {
        const INT32 index = IndexOf(item);
        return (index >= 0) && RemoveAt(static_cast<UINT32>(index));
    }

    bool RemoveAt(UINT32 index)
    {
        if (index >= m_count)
        {
            return false;
        }
        for (UINT32 i = index; i + 1 < m_count; i++)
        {
            m_list[i] = m_list[i + 1];
        }
        m_count--;
        m_list[m_count] = T();
        return true;
    }

    INT32 IndexOf(const T& item) const
    {
        for (UINT32 i = 0; i < m_count; i++)
        {
            if (m_list[i] == item)
            {
                return static_cast<INT32>(i);
            }
        }
        return -1;
    }

    bool Contains(const T& item) const { return IndexOf(item) >= 0; }

    void Clear()
    {
        delete[] m_list;
        m_list   = nullptr;
        m_count  = 0;
        m_bufCnt = 0;
    }

    // Out of range gives a default element of this thread, reset on every such access.
    T& operator[](UINT32 index)
    {
        if (index < m_count)
        {
            return m_list[index];
        }
        thread_local T s_default;
        s_default = T();
        return s_default;
    }

    const T& operator[](UINT32 index) const { return const_cast<PList*>(this)->operator[](index); }

    UINT32 Count() const { return m_count; }

    // The elements as an array (valid until the list changes), null when empty.
    T* ToArray() { return m_list; }

private:
    void CopyFrom(const PList& other)
    {
        for (UINT32 i = 0; i < other.m_count; i++)
        {
            Add(other.m_list[i]);
        }
    }

    T*     m_list   = nullptr;
    UINT32 m_count  = 0;
    UINT32 m_bufCnt = 0;
};

#endif // AECORE_TUNING_PARSER_PLIST_H

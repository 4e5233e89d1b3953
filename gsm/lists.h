#pragma once

// The shape shared by every list the library hands out (message containers, contact folders,
// a contact's numbers): the count first, then an entry by position.

namespace GSM {

template <typename Entry> class List {
public:
    List() = default;
    List(const List&) = delete;
    List& operator=(const List&) = delete;

    virtual int size() const = 0;
    virtual bool isEmpty() const = 0;
    // The entry at a 0-based position; null outside 0 .. size() - 1.
    virtual Entry* get(int position) const = 0;

protected:
    virtual ~List() = default;
};

} // namespace GSM

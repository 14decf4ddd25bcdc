#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace ZR::Corvale {

/// A hash whose high bits depend on all bits of `key`: keys are left folds over a text, whose last characters
/// reach the low bits alone.
inline std::uint64_t mixed(std::uint64_t key)
{
    return key * 0x9e3779b97f4a7c15u;
}

/// A hash table keyed by a hash: open addressing over one flat array.
///
/// The tables of the runtime hold a handful of entries, most of them one, that come and go with every
/// computation. Here an entry costs no allocation once the array stands. `find` and `insert` give
/// pointers that hold until the next insert or erase.
/// Threads: none of its own; its owner guards it.
template <typename Value>
class FlatTable
{
public:
    std::size_t size() const { return _size; }
    bool empty() const { return _size == 0; }

    Value* find(std::uint64_t key)
    {
        if (_size == 0)
            return nullptr;
        for (std::size_t i = _home(key); _slots[i].used; i = _next(i))
            if (_slots[i].key == key)
                return &_slots[i].value;
        return nullptr;
    }

    /// The value of a key, made by default if there was none, and whether it was made.
    std::pair<Value*, bool> insert(std::uint64_t key)
    {
        if (Value* present = find(key))
            return {present, false};
        if (4 * (_size + 1) > 3 * _slots.size())
            _grow();
        std::size_t i = _home(key);
        while (_slots[i].used)
            i = _next(i);
        _slots[i].used = true;
        _slots[i].key = key;
        ++_size;
        return {&_slots[i].value, true};
    }

    /// Takes a value out; one made by default if the key is absent.
    Value take(std::uint64_t key)
    {
        Value* present = find(key);
        if (!present)
            return Value();
        Value value = std::move(*present);
        std::size_t hole = _home(key);
        while (&_slots[hole].value != present)
            hole = _next(hole);
        _close(hole);
        return value;
    }

    /// Calls `visit(key, value)` for every entry, in no particular order.
    template <typename Visit>
    void forEach(Visit visit)
    {
        for (Slot& slot : _slots)
            if (slot.used)
                visit(slot.key, slot.value);
    }

private:
    struct Slot
    {
        std::uint64_t key = 0;
        Value value = Value();
        bool used = false;
    };

    std::size_t _home(std::uint64_t key) const
    {
        return static_cast<std::size_t>(mixed(key) >> 32) & (_slots.size() - 1);
    }
    std::size_t _next(std::size_t i) const { return (i + 1) & (_slots.size() - 1); }

    void _grow()
    {
        std::vector<Slot> former(_slots.empty() ? 4 : 2 * _slots.size());
        former.swap(_slots);
        for (Slot& slot : former) {
            if (!slot.used)
                continue;
            std::size_t i = _home(slot.key);
            while (_slots[i].used)
                i = _next(i);
            _slots[i] = std::move(slot);
        }
    }

    // Empties a slot and moves later entries of the same run back, so that no search ends early.
    void _close(std::size_t hole)
    {
        const std::size_t mask = _slots.size() - 1;
        for (std::size_t i = _next(hole); _slots[i].used; i = _next(i)) {
            const std::size_t home = _home(_slots[i].key);
            if (((i - home) & mask) >= ((i - hole) & mask)) {
                _slots[hole].key = _slots[i].key;
                _slots[hole].value = std::move(_slots[i].value);
                hole = i;
            }
        }
        _slots[hole].used = false;
        _slots[hole].value = Value();
        --_size;
    }

    std::vector<Slot> _slots; // a power of two of them, never full
    std::size_t _size = 0;
};

} // namespace ZR::Corvale

#pragma once

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include <utility>

// What people and objects do with their tables, each under the mutex that guards the table.
namespace ZR::Corvale::Type::lockedtable {

template <typename Table>
bool has(boost::mutex& mutex, const Table& table, const typename Table::key_type& key)
{
    const boost::lock_guard<boost::mutex> lock(mutex);
    return table.find(key) != table.end();
}

template <typename Table>
typename Table::mapped_type get(boost::mutex& mutex, const Table& table, const typename Table::key_type& key,
                                typename Table::mapped_type missing = {})
{
    const boost::lock_guard<boost::mutex> lock(mutex);
    const auto found = table.find(key);
    return found == table.end() ? missing : found->second;
}

template <typename Table>
void set(boost::mutex& mutex, Table& table, const typename Table::key_type& key,
         typename Table::mapped_type value)
{
    const boost::lock_guard<boost::mutex> lock(mutex);
    std::swap(table[key], value); // the former value ends after the lock
}

// Whether there was something to remove.
template <typename Table>
bool remove(boost::mutex& mutex, Table& table, const typename Table::key_type& key)
{
    typename Table::mapped_type former{}; // ends after the lock too
    const boost::lock_guard<boost::mutex> lock(mutex);
    const auto found = table.find(key);
    if (found == table.end())
        return false;
    std::swap(former, found->second);
    table.erase(found);
    return true;
}

} // namespace ZR::Corvale::Type::lockedtable

#pragma once

// Pods by number and by index, sets of them and tables over them.

#include <array>
#include <bitset>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>

#include "base/at.h"
#include "platform/driver.h"

namespace kavorix {

// One of the MaxZavs pod positions. Texts, files, commands and the driver name it by its number,
// 1..50; tables hold it under its index, the number less 1.
class Pod {
  public:
    static constexpr Pod numbered(int number) { return Pod(number - 1); }
    static constexpr Pod at_index(int index) { return Pod(index); }

    constexpr std::int16_t number() const { return static_cast<std::int16_t>(index_ + 1); }
    constexpr int index() const { return index_; }

    auto operator<=>(const Pod&) const = default;

  private:
    constexpr explicit Pod(int index) : index_(index) {}
    int index_;
};

// All pod positions in ascending order: for (const Pod pod : all_pods()).
class PodRange {
  public:
    class Iterator {
      public:
        constexpr explicit Iterator(int index) : index_(index) {}
        constexpr Pod operator*() const { return Pod::at_index(index_); }
        constexpr Iterator& operator++() {
            ++index_;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

      private:
        int index_;
    };
    constexpr Iterator begin() const { return Iterator(0); }
    constexpr Iterator end() const { return Iterator(MaxZavs); }
};

constexpr PodRange all_pods() {
    return {};
}

// A value for every pod.
template <class T>
class PodArray {
  public:
    constexpr T& operator[](Pod pod) { return values_[at(pod.index())]; }
    constexpr const T& operator[](Pod pod) const { return values_[at(pod.index())]; }
    constexpr T& operator[](std::size_t index) { return values_[index]; }
    constexpr const T& operator[](std::size_t index) const { return values_[index]; }
    constexpr std::size_t size() const { return values_.size(); }

    // In the order of the pods.
    constexpr auto begin() { return values_.begin(); }
    constexpr auto end() { return values_.end(); }
    constexpr auto begin() const { return values_.begin(); }
    constexpr auto end() const { return values_.end(); }
    constexpr void fill(const T& value) { values_.fill(value); }

    bool operator==(const PodArray&) const = default;

  private:
    std::array<T, MaxZavs> values_{};
};

// A set of pods; iterates over its members in ascending order.
class PodSet {
  public:
    PodSet() = default;
    PodSet(std::initializer_list<Pod> pods) {
        for (const Pod pod : pods) add(pod);
    }
    static PodSet all() {
        PodSet set;
        set.members_.set();
        return set;
    }

    bool has(Pod pod) const { return members_[at(pod.index())]; }
    // Whether that changed the set.
    bool add(Pod pod) { return set(pod, true); }
    bool remove(Pod pod) { return set(pod, false); }
    bool set(Pod pod, bool member) {
        const bool before = has(pod);
        members_[at(pod.index())] = member;
        return before != member;
    }
    void clear() { members_.reset(); }

    int count() const { return static_cast<int>(members_.count()); }
    bool empty() const { return members_.none(); }

    // The members that are, or are not, among the others.
    PodSet operator&(const PodSet& other) const { return PodSet(members_ & other.members_); }
    PodSet operator|(const PodSet& other) const { return PodSet(members_ | other.members_); }
    PodSet operator-(const PodSet& other) const { return PodSet(members_ & ~other.members_); }

    bool operator==(const PodSet&) const = default;

    class Iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Pod;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Pod;

        Iterator(const PodSet& set, int index) : set_(&set), index_(index) { skip(); }
        Pod operator*() const { return Pod::at_index(index_); }
        Iterator& operator++() {
            ++index_;
            skip();
            return *this;
        }
        bool operator==(const Iterator& other) const { return index_ == other.index_; }

      private:
        void skip() {
            while (index_ < MaxZavs && !set_->members_[at(index_)]) ++index_;
        }
        const PodSet* set_;
        int index_;
    };
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, MaxZavs}; }

  private:
    explicit PodSet(std::bitset<MaxZavs> members) : members_(members) {}

    std::bitset<MaxZavs> members_;
};

}  // namespace kavorix

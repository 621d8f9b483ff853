#pragma once

#include <algorithm>
#include <memory>
#include <vector>

namespace KOVA::Quorvex {

// The objects of one kind in a scene, in the order in which they were added, each with its id. Elements are copies that
// the list owns; they stay where they are until they are removed. Assigning a list makes both share the elements (the
// last one frees them); a copy constructed from a list has elements of its own, with new ids.
template <class T> class ObjectList {
public:
    struct Element {
        Element(const T& source, unsigned int number) : object(source), id(number) {}
        T object;
        unsigned int id;
    };
    using Elements = std::vector<std::shared_ptr<Element>>;

    ObjectList() : m_elements(std::make_shared<Elements>()) {}
    ObjectList(const ObjectList& other) : ObjectList() {
        for (const auto& element : *other.m_elements) {
            Add(element->object);
        }
    }
    ObjectList& operator=(const ObjectList& other) = default;
    ~ObjectList() = default;

    Element& Add(const T& object) {
        m_elements->push_back(std::make_shared<Element>(object, s_nextId));
        ++s_nextId;
        return *m_elements->back();
    }

    // Removes the first element for which matches(object) is true.
    template <class Predicate> void RemoveFirst(Predicate matches) {
        const auto found = std::find_if(m_elements->begin(), m_elements->end(),
                                        [&matches](const auto& element) { return matches(element->object); });
        if (found != m_elements->end()) {
            const std::shared_ptr<Element> removed = *found; // the predicate's argument may live in it
            m_elements->erase(found);
        }
    }

    void Clear() {
        Elements removed;
        removed.swap(*m_elements); // the list is empty before the first element goes
    }

    unsigned int Count() const { return static_cast<unsigned int>(m_elements->size()); }
    const Elements& All() const { return *m_elements; }

    // The elements as they are now. For drawing, which lets the host change the scene in between: what it removes stays
    // alive until the snapshot goes.
    Elements Snapshot() const { return *m_elements; }

private:
    std::shared_ptr<Elements> m_elements;

    static unsigned int s_nextId; // one counter a kind for the whole process; defined in ObjectTypes.cpp
};

} // namespace KOVA::Quorvex

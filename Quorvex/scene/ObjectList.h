#pragma once

#include <list>
#include <memory>

namespace KOVA::Quorvex {

// The objects of one kind in a scene, in the order in which they were added, each with its id. Elements are copies
// that the list owns and do not move. Assigning a list makes both share the elements (the last one frees them); a copy
// constructed from a list has elements of its own, with new ids.
template <class T> class ObjectList {
public:
    struct Element {
        Element(const T& source, unsigned int id) : object(source), id(id) {}
        T object;
        unsigned int id;
    };
    using Elements = std::list<Element>;

    ObjectList() : m_elements(std::make_shared<Elements>()) {}
    ObjectList(const ObjectList& other) : ObjectList() {
        for (const Element& element : *other.m_elements) {
            Add(element.object);
        }
    }
    ObjectList& operator=(const ObjectList& other) = default;
    ~ObjectList() = default;

    Element& Add(const T& object) {
        m_elements->emplace_back(object, s_nextId);
        ++s_nextId;
        return m_elements->back();
    }

    // Removes the first element for which matches(object) is true.
    template <class Predicate> void RemoveFirst(Predicate matches) {
        for (auto it = m_elements->begin(); it != m_elements->end(); ++it) {
            if (matches(it->object)) {
                m_elements->erase(it);
                return;
            }
        }
    }

    void Clear() { m_elements->clear(); }
    unsigned int Count() const { return static_cast<unsigned int>(m_elements->size()); }

    typename Elements::iterator begin() { return m_elements->begin(); }
    typename Elements::iterator end() { return m_elements->end(); }
    typename Elements::const_iterator begin() const { return m_elements->cbegin(); }
    typename Elements::const_iterator end() const { return m_elements->cend(); }

private:
    std::shared_ptr<Elements> m_elements;

    static unsigned int s_nextId; // one counter a kind for the whole process; defined once, in ObjectTypes.cpp
};

} // namespace KOVA::Quorvex

#include "opmode/tree/node_store.h"

#include "platform/prefetch.h"

#include <QHashSeed>

#include <algorithm>
#include <bit>
#include <utility>

namespace ktr {

namespace {

constexpr std::size_t fewestSlots = 64;
/// Of the arena: values that change for months are to take no more memory than this. Beyond, a quarter of it.
constexpr std::size_t toleratedWaste = std::size_t{64} << 10;
constexpr std::size_t largestArena = 0xFFFFFF00;

/// A length, seven bits a byte, the last one below 128.
template <class Arena> void putLength(Arena &arena, std::size_t length)
{
    for (; length >= 0x80; length >>= 7) {
        arena.push_back(static_cast<char>(length | 0x80));
    }
    arena.push_back(static_cast<char>(length));
}

std::size_t takeLength(const char *&at)
{
    std::size_t length = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(*at++);
        length |= static_cast<std::size_t>(byte & 0x7F) << shift;
        if (byte < 0x80) {
            return length;
        }
    }
}

} // namespace

NodeStore::NodeStore() : m_slots(fewestSlots), m_seed(QHashSeed::globalSeed())
{
    m_nodes.push_back({root, 0, 0});
    m_arena.assign(2, '\0');
    m_branches.insert(root, {NodeKind::Root, {}});
}

std::optional<NodeStore::Id> NodeStore::add(const Place &place, std::string_view text, std::int32_t colour)
{
    const auto [parent, name, hashed] = place;
    if ((m_alive + 1) * 3 / 2 > m_slots.size()) {
        rebuildSlots(m_slots.size() * 2);
    }
    Slot &slot = m_slots[slotOf(place)];
    if (slot.id != root) {
        return std::nullopt;
    }
    const std::optional<std::uint32_t> stored = store(name, text);
    if (!stored) {
        return std::nullopt;
    }
    const Id id = end();
    m_nodes.push_back({parent, *stored, colour});
    slot = {id, hashed};
    ++m_alive;
    auto branch = m_branches.find(parent);
    if (branch == m_branches.end()) {
        branch = m_branches.insert(parent, {kind(parent), {}});
    }
    branch->children.push_back(id);
    const NodeKind own = childKind(branch->kind, name);
    if (own == NodeKind::Station || own == NodeKind::Notifications || own == NodeKind::History ||
        own == NodeKind::InputValues) {
        m_branches.insert(id, {own, {}});
    }
    return id;
}

void NodeStore::reserve(std::size_t nodes, std::size_t bytes)
{
    constexpr std::size_t lengths = 2;
    m_nodes.reserve(m_nodes.size() + nodes);
    m_arena.reserve(std::min(largestArena, m_arena.size() + bytes + lengths * nodes));
    const std::size_t slots = std::bit_ceil((m_alive + nodes) * 3 / 2 + 1);
    if (slots > m_slots.size()) {
        rebuildSlots(slots);
    }
}

std::size_t NodeStore::overhead() const
{
    std::size_t bytes = m_nodes.capacity() * sizeof(Node) + m_slots.capacity() * sizeof(Slot) +
                        static_cast<std::size_t>(m_branches.capacity()) * (sizeof(Id) + sizeof(Branch) + 1);
    for (const Branch &branch : m_branches) {
        bytes += branch.children.capacity() * sizeof(Id);
    }
    std::size_t held = 0;
    for (Id id = root + 1; id < end(); ++id) {
        if (isStored(id)) {
            const Texts both = texts(id);
            held += both.name.size() + (both.text.data() == both.name.data() ? 0 : both.text.size());
        }
    }
    return bytes + m_arena.capacity() - held;
}

void NodeStore::remove(Id id)
{
    if (m_aside.contains(id)) { // it is neither among the others nor found by its name
        m_asideCount -= countFrom(id);
        m_aside.remove(id);
    } else {
        leaveSiblings(id);
        removeSlot(id);
    }
    std::vector<Id> doomed{id};
    while (!doomed.empty()) {
        const Id last = doomed.back();
        doomed.pop_back();
        if (const auto branch = m_branches.constFind(last); branch != m_branches.constEnd()) {
            doomed.insert(doomed.end(), branch->children.begin(), branch->children.end());
            m_branches.erase(branch);
        }
        if (last != id) {
            removeSlot(last);
        }
        m_waste += texts(last).size;
        m_nodes[last].text = dead;
        --m_alive;
    }
    compactWhenWasteful();
}

void NodeStore::leaveSiblings(Id id)
{
    std::vector<Id> &siblings = m_branches.find(m_nodes[id].parent)->children;
    siblings.erase(std::ranges::lower_bound(siblings, id));
}

void NodeStore::setAside(Id station)
{
    leaveSiblings(station);
    removeSlot(station);
    m_aside.insert(station);
    m_asideCount += countFrom(station);
}

bool NodeStore::putBack(Id station)
{
    const Place own = place(root, name(station));
    Slot &slot = m_slots[slotOf(own)];
    if (slot.id != root) {
        return false;
    }
    slot = {station, own.hash};
    std::vector<Id> &siblings = m_branches.find(root)->children;
    siblings.insert(std::ranges::lower_bound(siblings, station), station);
    m_asideCount -= countFrom(station);
    m_aside.remove(station);
    return true;
}

bool NodeStore::isAside(Id id) const
{
    while (id != root && m_nodes[id].parent != root) {
        id = m_nodes[id].parent;
    }
    return m_aside.contains(id);
}

/// Of the node and all that is under it.
std::size_t NodeStore::countFrom(Id id) const
{
    std::size_t count = 1;
    for (const Id child : children(id)) {
        count += countFrom(child);
    }
    return count;
}

bool NodeStore::setText(Id id, std::string_view text)
{
    const Texts before = texts(id);
    if (before.text == text) {
        return true;
    }
    if (text.size() == before.text.size() && before.name.data() != before.text.data()) {
        // Values mostly keep their length.
        m_arena.replace(static_cast<std::size_t>(before.text.data() - m_arena.data()), text.size(), text);
        return true;
    }
    const std::string name(before.name); // the arena moves
    const std::optional<std::uint32_t> stored = store(name, text);
    if (!stored) {
        return false;
    }
    m_nodes[id].text = *stored;
    m_waste += before.size;
    compactWhenWasteful();
    return true;
}

bool NodeStore::hasRoom(std::size_t bytes) const
{
    constexpr std::size_t lengths = 20;
    return m_nodes.size() < dead && bytes < largestArena && m_arena.size() < largestArena - bytes - lengths;
}

std::optional<NodeStore::Id> NodeStore::child(const Place &place) const
{
    const Id id = m_slots[slotOf(place)].id;
    return id == root ? std::nullopt : std::optional(id);
}

void NodeStore::fetch(const Place &place) const
{
    prefetch(&m_slots[place.hash & (m_slots.size() - 1)]);
}

/// Where a node is listed, or the free slot where it would be.
std::size_t NodeStore::slotOf(const Place &place) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = place.hash & mask;
    for (; m_slots[at].id != root; at = (at + 1) & mask) {
        const Id id = m_slots[at].id;
        if (m_slots[at].hash == place.hash && m_nodes[id].parent == place.parent &&
            texts(id).name == place.name) {
            break;
        }
    }
    return at;
}

std::optional<NodeStore::Place> NodeStore::place(std::string_view key) const
{
    Id parent = root;
    while (true) {
        const NodeKind above = kind(parent);
        const std::size_t slash = above == NodeKind::Notifications || above == NodeKind::History
                                      ? std::string_view::npos
                                      : key.find('/');
        if (slash == std::string_view::npos) {
            return place(parent, key);
        }
        const std::optional<Id> next = child(parent, key.substr(0, slash));
        if (!next) {
            return std::nullopt;
        }
        parent = *next;
        key.remove_prefix(slash + 1);
    }
}

std::optional<NodeStore::Id> NodeStore::find(std::string_view key) const
{
    const std::optional<Place> found = place(key);
    return found ? child(*found) : std::nullopt;
}

const std::vector<NodeStore::Id> &NodeStore::children(Id id) const
{
    static const std::vector<Id> none;
    const auto branch = m_branches.constFind(id);
    return branch == m_branches.constEnd() ? none : branch->children;
}

std::size_t NodeStore::row(Id id) const
{
    const std::vector<Id> &siblings = children(m_nodes[id].parent);
    return static_cast<std::size_t>(std::ranges::lower_bound(siblings, id) - siblings.begin());
}

NodeKind NodeStore::kind(Id id) const
{
    if (const auto branch = m_branches.constFind(id); branch != m_branches.constEnd()) {
        return branch->kind;
    }
    return childKind(m_branches.constFind(m_nodes[id].parent)->kind, name(id));
}

NodeKind NodeStore::childKind(NodeKind parent, std::string_view name)
{
    switch (parent) {
    case NodeKind::Root:
        return NodeKind::Station;
    case NodeKind::Station:
        return name == branches::notifications ? NodeKind::Notifications
               : name == branches::history     ? NodeKind::History
               : name == branches::inputValues ? NodeKind::InputValues
                                               : NodeKind::Other;
    case NodeKind::Notifications:
        return NodeKind::Notification;
    case NodeKind::History:
        return NodeKind::HistoryEntry;
    case NodeKind::InputValues:
        return NodeKind::InputValue;
    default:
        return NodeKind::Other;
    }
}

std::string NodeStore::key(Id id) const
{
    std::string key;
    getKey(id, key);
    return key;
}

void NodeStore::getKey(Id id, std::string &key) const
{
    Id station = id;
    while (m_nodes[station].parent != root) {
        station = m_nodes[station].parent;
    }
    getKey(id, name(station), key);
}

void NodeStore::getKeyInNextRun(Id id, std::string &key) const
{
    Id station = id;
    while (m_nodes[station].parent != root) {
        station = m_nodes[station].parent;
    }
    getKey(id, text(station), key);
}

void NodeStore::getKey(Id id, std::string_view stationName, std::string &key) const
{
    std::size_t size = stationName.size();
    for (Id node = id; m_nodes[node].parent != root; node = m_nodes[node].parent) {
        size += 1 + name(node).size();
    }
    key.resize(size);
    for (Id node = id; m_nodes[node].parent != root; node = m_nodes[node].parent) {
        const std::string_view own = name(node);
        size -= own.size();
        own.copy(key.data() + size, own.size());
        key[--size] = '/';
    }
    stationName.copy(key.data(), stationName.size());
}

/// The name's length, the name, the text's length plus one, the text; 0 stands for a text that is the name.
std::optional<std::uint32_t> NodeStore::store(std::string_view name, std::string_view text)
{
    const std::size_t offset = m_arena.size();
    if (!hasRoom(name.size() + text.size())) {
        return std::nullopt;
    }
    putLength(m_arena, name.size());
    m_arena.append(name);
    const bool isName = text.size() == name.size() && (text.data() == name.data() || text == name);
    if (isName) {
        putLength(m_arena, 0);
    } else {
        putLength(m_arena, text.size() + 1);
        m_arena.append(text);
    }
    return static_cast<std::uint32_t>(offset);
}

NodeStore::Texts NodeStore::texts(Id id) const
{
    const char *const begin = m_arena.data() + m_nodes[id].text;
    const char *at = begin;
    const std::size_t nameLength = takeLength(at);
    const std::string_view name(at, nameLength);
    at += nameLength;
    const std::size_t textLength = takeLength(at);
    const std::string_view text = textLength == 0 ? name : std::string_view(at, textLength - 1);
    at += textLength == 0 ? 0 : textLength - 1;
    return {name, text, static_cast<std::size_t>(at - begin)};
}

std::uint32_t NodeStore::hash(Id parent, std::string_view name) const
{
    const std::size_t seed = m_seed ^ (parent * std::size_t{0x9E3779B97F4A7C15});
    return static_cast<std::uint32_t>(qHashBits(name.data(), name.size(), seed));
}

void NodeStore::removeSlot(Id id)
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t gap = hash(m_nodes[id].parent, name(id)) & mask;
    while (m_slots[gap].id != id) {
        gap = (gap + 1) & mask;
    }
    // What follows moves up, unless it would come to stand before its home.
    for (std::size_t slot = (gap + 1) & mask; m_slots[slot].id != root; slot = (slot + 1) & mask) {
        if (((slot - m_slots[slot].hash) & mask) >= ((slot - gap) & mask)) {
            m_slots[gap] = m_slots[slot];
            gap = slot;
        }
    }
    m_slots[gap] = {};
}

void NodeStore::rebuildSlots(std::size_t slots)
{
    const Large<Slot> before = std::exchange(m_slots, Large<Slot>(slots));
    const std::size_t mask = slots - 1;
    for (const Slot &slot : before) {
        if (slot.id != root) {
            std::size_t at = slot.hash & mask;
            while (m_slots[at].id != root) {
                at = (at + 1) & mask;
            }
            m_slots[at] = slot;
        }
    }
}

void NodeStore::compactWhenWasteful()
{
    if (m_waste <= std::max(toleratedWaste, m_arena.size() / 4)) {
        return;
    }
    Arena arena;
    const std::size_t used = m_arena.size() - m_waste;
    arena.reserve(used + used / 2 + toleratedWaste); // it need not move until the next time
    for (Id id = root; id < end(); ++id) {
        if (isStored(id)) {
            const std::string_view stored(m_arena.data() + m_nodes[id].text, texts(id).size);
            m_nodes[id].text = static_cast<std::uint32_t>(arena.size());
            arena.append(stored);
        }
    }
    m_arena = std::move(arena);
    m_waste = 0;
}

} // namespace ktr

#include "tests/planner/twin/RandomNetworks.h"

#include "tests/planner/twin/RandomOddities.h"
#include "tests/planner/twin/RandomTopology.h"
#include "tests/planner/twin/RandomTraffic.h"

namespace
{

int pickBuffer(RandomSource& random)
{
    return random.pick({1, 2, 4, 4, 5, 8, 10, 40});
}

std::vector<int> pickListeners(RandomSource& random, std::vector<int> hosts, int talker, int most)
{
    random.shuffle(hosts);
    std::vector<int> listeners;
    for (const int host : hosts) {
        if (host != talker && static_cast<int>(listeners.size()) < most)
            listeners.push_back(host);
    }
    return listeners;
}

/// Virtual links and flows all over the network.
NetworkDraft anywhere(RandomSource& random, bool multicast)
{
    NetworkDraft draft;
    RandomTopology topology(random, draft);
    const int switchCount = random.between(1, 5);
    topology.growAny(switchCount, random.between(2, 6));
    const int hostBuffer = pickBuffer(random);
    topology.number(hostBuffer, pickBuffer(random));
    TrafficStyle style;
    style.firstSlots = random.pick({2, 6, 12, 30});
    style.widest = random.pick({0, 2, 6, 12});
    style.wideReceive = random.chance(30);
    RandomTraffic traffic(random, draft, topology, style);
    for (int links = random.between(1, 5); links > 0; --links) {
        const int talker = random.pick(topology.hosts());
        const int most = multicast ? random.between(2, 4) : random.pick({1, 1, 2});
        traffic.addVirtualLink(talker, pickListeners(random, topology.hosts(), talker, most),
                               multicast ? 50 : 10, 2);
    }
    for (int flows = random.between(1, 9); flows > 0; --flows)
        traffic.addFlow(random.pick(draft.virtualLinks));
    traffic.choosePeriods();
    return draft;
}

/// Many narrow send windows at one host; nothing behind it binds.
NetworkDraft crowdedTalker(RandomSource& random)
{
    NetworkDraft draft;
    RandomTopology topology(random, draft);
    const int switchCount = random.between(1, 2);
    topology.growFunnel(switchCount, 1, random.between(1, 3));
    topology.number(random.pick({4, 40}), 40);
    TrafficStyle style;
    style.firstSlots = random.pick({3, 6});
    style.widest = random.pick({1, 3, 5});
    style.wideReceive = true;
    style.samePeriod = random.chance(80);
    RandomTraffic traffic(random, draft, topology, style);
    for (size_t i = 1; i < topology.hosts().size(); ++i)
        traffic.addVirtualLink(topology.hosts().front(), {topology.hosts()[i]}, 0, 0);
    for (int flows = random.between(2, 7); flows > 0; --flows)
        traffic.addFlow(random.pick(draft.virtualLinks));
    traffic.choosePeriods();
    return draft;
}

/// Many hosts that send when they like, to one listener with narrow receive windows.
NetworkDraft crowdedListener(RandomSource& random)
{
    NetworkDraft draft;
    RandomTopology topology(random, draft);
    const int talkers = random.between(2, 7);
    const int switchCount = random.pick({1, 1, 2, 3});
    topology.growFunnel(switchCount, talkers, random.between(1, 2));
    topology.number(random.pick({4, 60}), 60);
    TrafficStyle style;
    style.firstSlots = random.pick({3, 6});
    style.widest = random.pick({1, 3, 5});
    style.wideSend = true;
    style.samePeriod = random.chance(80);
    RandomTraffic traffic(random, draft, topology, style);
    const std::vector<int>& hosts = topology.hosts();
    for (size_t i = 0; i < static_cast<size_t>(talkers); ++i) {
        const int listener = random.chance(80) ? hosts[static_cast<size_t>(talkers)] : hosts.back();
        traffic.addVirtualLink(hosts[i], {listener}, 0, 0);
    }
    for (const DraftVirtualLink& link : draft.virtualLinks)
        traffic.addFlow(link);
    traffic.choosePeriods();
    if (random.chance(50)) {
        // A receive window that ends late lifts the end of the slot table out of the way.
        DraftFlow& flow = draft.flows.back();
        flow.listeners.front().rxwin = QStringLiteral(u"[2000,9000]");
    }
    return draft;
}

/// Receive windows of one start that all end with the slot table, a narrower one last.
///
/// The wide ones give way until some pass the end of the table, where nothing is remembered as
/// taken. One of them there is a plan; two share that slot for ever.
NetworkDraft crowdedTableEnd(RandomSource& random)
{
    NetworkDraft draft;
    RandomTopology topology(random, draft);
    const int width = random.between(1, 3);
    const int talkers = width + random.between(1, 3) + 1;
    topology.growFunnel(1, talkers, 1);
    topology.number(60, 60);
    TrafficStyle style;
    style.wideSend = true;
    style.samePeriod = true;
    RandomTraffic traffic(random, draft, topology, style);
    const std::vector<int>& hosts = topology.hosts();
    for (size_t i = 0; i < static_cast<size_t>(talkers); ++i) {
        traffic.addVirtualLink(hosts[i], {hosts.back()}, 0, 0);
        traffic.addFlow(draft.virtualLinks.back());
        const int last = i + 1 < static_cast<size_t>(talkers) ? 2 + width : 2;
        draft.flows.back().listeners.front().rxwin =
            QStringLiteral(u"[400,%1]").arg((last + 1) * 200);
    }
    return draft;
}

/// Many instances in the cycle, so that one port holds more windows than sort without partition.
NetworkDraft longCycle(RandomSource& random)
{
    NetworkDraft draft;
    RandomTopology topology(random, draft);
    const int switchCount = random.between(1, 3);
    const int talkerCount = random.between(1, 4);
    topology.growFunnel(switchCount, talkerCount, random.between(1, 3));
    const int hostBuffer = pickBuffer(random);
    topology.number(hostBuffer, random.pick({4, 8, 40}));
    TrafficStyle style;
    style.firstSlots = random.pick({2, 10});
    style.widest = random.pick({2, 8, 20});
    style.wideReceive = random.chance(70);
    style.mostInstances = 150;
    RandomTraffic traffic(random, draft, topology, style);
    for (int links = random.between(1, 4); links > 0; --links) {
        const int talker = topology.hosts().front();
        traffic.addVirtualLink(talker, pickListeners(random, topology.hosts(), talker, 1), 0, 0);
    }
    for (int flows = random.between(3, 25); flows > 0; --flows)
        traffic.addFlow(random.pick(draft.virtualLinks));
    traffic.choosePeriods();
    return draft;
}

/// Ways that turn back, also through the talker itself.
NetworkDraft wandering(RandomSource& random)
{
    NetworkDraft draft;
    RandomTopology topology(random, draft);
    const int switchCount = random.between(1, 4);
    topology.growAny(switchCount, random.between(2, 4));
    const int hostBuffer = pickBuffer(random);
    topology.number(hostBuffer, random.pick({4, 8, 40}));
    TrafficStyle style;
    style.wideReceive = random.chance(50);
    RandomTraffic traffic(random, draft, topology, style);
    for (int links = random.between(1, 3); links > 0; --links) {
        const int talker = random.pick(topology.hosts());
        traffic.addVirtualLink(
            talker, pickListeners(random, topology.hosts(), talker, random.between(1, 3)), 40, 60);
    }
    for (int flows = random.between(2, 6); flows > 0; --flows)
        traffic.addFlow(random.pick(draft.virtualLinks));
    traffic.choosePeriods();
    return draft;
}

NetworkDraft draftOf(RandomSource& random, QString& family)
{
    const int choice = random.below(100);
    if (choice < 2) {
        family = QStringLiteral(u"crowded table end");
        return crowdedTableEnd(random);
    }
    if (choice < 30) {
        family = QStringLiteral(u"anywhere");
        return anywhere(random, false);
    }
    if (choice < 48) {
        family = QStringLiteral(u"multicast");
        return anywhere(random, true);
    }
    if (choice < 65) {
        family = QStringLiteral(u"crowded talker");
        return crowdedTalker(random);
    }
    if (choice < 85) {
        family = QStringLiteral(u"crowded listener");
        return crowdedListener(random);
    }
    if (choice < 92) {
        family = QStringLiteral(u"long cycle");
        return longCycle(random);
    }
    family = QStringLiteral(u"wandering");
    return wandering(random);
}

} // namespace

RandomNetwork randomNetwork(quint64 seed)
{
    RandomSource random(seed);
    RandomNetwork network;
    network.seed = seed;
    NetworkDraft draft = draftOf(random, network.family);
    if (random.chance(15)) {
        network.family += QStringLiteral(u", odd");
        addOddities(random, draft);
    }
    QByteArray bytes = documentOf(draft);
    if (random.chance(5)) {
        network.family += QStringLiteral(u", damaged");
        bytes = damaged(random, bytes);
    }
    network.files.push_back({QStringLiteral(u"vek_input.xml"), bytes});
    if (random.chance(1))
        network.files.push_back({QStringLiteral(u"vek_input.old"), bytes});
    if (random.chance(1))
        network.files.push_back({QStringLiteral(u"notes.xml"), bytes});
    if (random.chance(1)) {
        network.family = QStringLiteral(u"no folder");
        network.files.clear();
    }
    return network;
}

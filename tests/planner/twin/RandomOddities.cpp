#include "tests/planner/twin/RandomOddities.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace
{

void renameNode(RandomSource& random, NetworkDraft& draft)
{
    static const std::vector<QString> names = {
        QStringLiteral(u"主机 一"),   QStringLiteral(u"a&b<c>d"), QStringLiteral(u" blank "),
        QStringLiteral(u"q\"uote"),   QStringLiteral(u"%1"),      QStringLiteral(u"h0"),
        QStringLiteral(u"com,ma"),    QStringLiteral(u""),        QStringLiteral(u"[1,2]"),
        QStringLiteral(u"tab\tname"), QStringLiteral(u"S0"),
    };
    DraftNode& node = random.chance(50) ? draft.nodes.front() : draft.nodes.back();
    const QString before = node.name;
    node.name = random.pick(names);
    for (DraftVirtualLink& link : draft.virtualLinks) {
        for (QStringList& path : link.paths) {
            for (QString& name : path) {
                if (name == before)
                    name = node.name;
            }
        }
    }
    for (DraftFlow& flow : draft.flows) {
        if (flow.talker == before)
            flow.talker = node.name;
        for (DraftListener& listener : flow.listeners) {
            if (listener.name == before)
                listener.name = node.name;
        }
    }
}

QString oddWindow(RandomSource& random)
{
    static const std::vector<QString> texts = {
        QStringLiteral(u"[0,0]"),
        QStringLiteral(u"0,2000"),
        QStringLiteral(u"[400]"),
        QStringLiteral(u"[]"),
        QStringLiteral(u""),
        QStringLiteral(u"x[200,3000]y"),
        QStringLiteral(u"[a,3000]"),
        QStringLiteral(u"[-900,2600]"),
        QStringLiteral(u"[400,200]"),
        QStringLiteral(u"[ 2 , 900]"),
        QStringLiteral(u"[0,200000]"),
        QStringLiteral(u"[0,1029,7]"),
        QStringLiteral(u"[0x10,3000]"),
        QStringLiteral(u"[0,99999999999]"),
    };
    return random.pick(texts);
}

void changeFlow(RandomSource& random, NetworkDraft& draft, DraftFlow& flow)
{
    switch (random.below(11)) {
    case 0:
        draft.flows.front().flowID = 0;
        break;
    case 1:
        flow.flowID = 0;
        break;
    case 2:
        flow.flowID = draft.flows.front().flowID;
        break;
    case 3:
        flow.type = random.pick({QStringLiteral(u"\"BE\""), QStringLiteral(u"TT"),
                                 QStringLiteral(u"\"tt\""), QStringLiteral(u"\"TT\" "), QString()});
        break;
    case 4:
        flow.talker = random.pick(draft.nodes).name;
        break;
    case 5:
        if (!flow.listeners.empty())
            flow.listeners.front().name = random.pick(draft.nodes).name;
        break;
    case 6:
        flow.vlid = random.pick({0, 1, 2, 99, 70000});
        break;
    case 7:
        flow.txwin = oddWindow(random);
        break;
    case 8:
        if (!flow.listeners.empty())
            flow.listeners.back().rxwin = oddWindow(random);
        break;
    case 9:
        flow.listeners.clear();
        break;
    default:
        flow.period = random.pick({0U, 50U, 100U});
        break;
    }
}

/// Periods whose common multiple leaves 32 bits, or whose cycle holds too many hops.
void changePeriods(RandomSource& random, NetworkDraft& draft)
{
    const bool refused = random.chance(30);
    for (DraftFlow& flow : draft.flows)
        flow.period = refused ? 30000001U
                              : random.pick({200000000U, 1000000007U, 3999999979U, 2147483648U,
                                             400000000U, 4294967295U});
    if (refused)
        draft.flows.front().period = 1;
}

QByteArray oddNumber(RandomSource& random)
{
    return random.pick({QByteArray("0"), QByteArray("1"), QByteArray("-1"), QByteArray("65537"),
                        QByteArray("12abc"), QByteArray(" 3"), QByteArray("x"),
                        QByteArray("4294967297")});
}

/// What is done to the windows of one document.
struct Disturbance {
    int percent = 0;   ///< of the windows
    int offset = 0;    ///< slots, to bring windows below the slot table
    bool odd = false;  ///< texts of another shape, too
    bool last = false; ///< all windows at the largest slots that there are
};

QByteArray windowText(qint64 start, qint64 end)
{
    return "[" + QByteArray::number(start) + "," + QByteArray::number(end) + "]";
}

/// A window near the slot behind which slots wrap; some end before they start.
QByteArray windowAtTheLastSlots(RandomSource& random)
{
    constexpr qint64 largest = std::numeric_limits<qint32>::max();
    const qint64 start = largest - random.below(4);
    return windowText(start, std::min(largest, start + random.between(-3, 4)));
}

/// Around what the document has: shifted, widened, inverted, or a text of another shape.
QByteArray disturbedWindow(RandomSource& random, const Disturbance& disturbance,
                           const QByteArray& text)
{
    if (disturbance.last)
        return windowAtTheLastSlots(random);
    int start = 0;
    int end = 0;
    std::sscanf(text.constData(), "[%d,%d]", &start, &end);
    if (random.chance(disturbance.percent)) {
        start += random.between(-4, 4);
        end += random.pick({0, 1, 3, 9, -3});
    }
    if (disturbance.odd && random.chance(5))
        return random.pick({QByteArray("[a,30]"), QByteArray("[5]"), QByteArray("7,9"),
                            QByteArray("[4,b]"), QByteArray("x[3,8,9]y"), QByteArray("[,]")});
    return windowText(start + disturbance.offset, end + disturbance.offset);
}

void changeTopology(RandomSource& random, NetworkDraft& draft)
{
    switch (random.below(8)) {
    case 0:
        random.shuffle(draft.links);
        break;
    case 1:
        draft.links.pop_back();
        break;
    case 2:
        draft.links.push_back(random.pick(draft.links));
        draft.links.back().portA += 5;
        draft.links.back().portB += 6;
        break;
    case 3:
        draft.nodes.back().nodeID = draft.nodes.front().nodeID;
        draft.nodes.back().buffernum += 3;
        break;
    case 4:
        draft.nodes.front().buffernum = random.pick({0, 70000, 65535});
        break;
    case 5:
        random.shuffle(draft.virtualLinks);
        break;
    case 6:
        draft.virtualLinks.back().vlid = draft.virtualLinks.front().vlid;
        break;
    default:
        renameNode(random, draft);
        break;
    }
}

} // namespace

void addOddities(RandomSource& random, NetworkDraft& draft)
{
    // Alone, since a short period beside these would fill the cycle with a million instances.
    if (random.chance(8)) {
        changePeriods(random, draft);
        return;
    }
    for (int changes = random.between(1, 3); changes > 0 && !draft.flows.empty(); --changes) {
        if (random.chance(60))
            changeFlow(random, draft,
                       draft.flows[static_cast<size_t>(
                           random.below(static_cast<int>(draft.flows.size())))]);
        else if (!draft.links.empty() && !draft.virtualLinks.empty())
            changeTopology(random, draft);
    }
}

QByteArray damaged(RandomSource& random, const QByteArray& document)
{
    QList<QByteArray> lines = document.split('\n');
    const int line = random.below(lines.size());
    switch (random.below(8)) {
    case 0:
        return document.left(random.below(document.size()));
    case 1:
        return random.pick({QByteArray(), QByteArray("<!-- nothing -->"), QByteArray("<x/>")});
    case 2:
        lines.swapItemsAt(line, random.below(lines.size()));
        break;
    case 3:
        lines.insert(line, "<extra>1</extra>");
        break;
    case 4: {
        // A leaf without its text.
        const QByteArray leaf = lines.at(line);
        lines[line] = leaf.left(leaf.indexOf('>') + 1) + leaf.mid(leaf.lastIndexOf('<'));
        break;
    }
    default:
        lines.removeAt(line);
        break;
    }
    return lines.join('\n');
}

QByteArray disturbedWindows(RandomSource& random, const QByteArray& document)
{
    if (random.chance(4))
        return damaged(random, document);
    Disturbance disturbance;
    disturbance.percent = random.pick({5, 30, 100});
    disturbance.offset = random.pick({0, 0, 0, -3, -8});
    disturbance.odd = random.chance(10);
    disturbance.last = random.chance(5);
    const bool numbers = random.chance(10);
    QList<QByteArray> lines = document.split('\n');
    for (QByteArray& line : lines) {
        const int from = line.indexOf('>') + 1;
        const int to = line.lastIndexOf('<');
        if (from <= 0 || to <= from)
            continue;
        const bool isWindow = line.at(from) == '[';
        QByteArray text = line.mid(from, to - from);
        if (isWindow)
            text = disturbedWindow(random, disturbance, text);
        else if (numbers && random.chance(2))
            text = oddNumber(random);
        line.replace(from, to - from, text);
    }
    return lines.join('\n');
}

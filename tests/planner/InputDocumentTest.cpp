#include "planner/InputDocument.h"
#include "planner/documents/DocumentAccess.h"

#include "tests/planner/InputText.h"
#include "tests/planner/Windows.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Spoken.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

#include <tinyxml2.h>

using namespace planner;

static QString inputFile()
{
    return QStringLiteral("ResourceXML/vek_input.xml");
}

static InputText twoFlows()
{
    InputText input = lineNetwork(1, 4);
    for (int id : {1, 2}) {
        input.flow(id, QStringLiteral("1000"), 1, QStringLiteral("A"), QStringLiteral("[0,1000]"),
                   {{QStringLiteral("B"), QStringLiteral("[200,2000]")}});
    }
    return input;
}

class InputDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }

    void cleanup() { m_folder.reset(); }

    void missingFolderIsReported()
    {
        const LogCapture log;
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::folderMissing);
        QCOMPARE(log.lines(), QStringList{QStringLiteral("finding vek_input.xml----------")});
    }

    void folderWithoutDocumentGivesAnEmptyContext()
    {
        const LogCapture log;
        writeFile(QStringLiteral("ResourceXML/Vek_input.xml"), twoFlows().document());
        writeFile(QStringLiteral("ResourceXML/vek_input.old.xml"), twoFlows().document());
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QVERIFY(context.hosts.empty());
    }

    void fileThatDoesNotParseIsReportedWithItsNumber()
    {
        const LogCapture log;
        writeFile(inputFile(), "<vek_input><topology>");
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::unreadable);
        const QRegularExpression error(QStringLiteral("^INPUT_XML_PARSE_ERR: [1-9]\\d*$"));
        QVERIFY(error.match(log.lines().last()).hasMatch());
    }

    void goodDocumentLogsItsWay()
    {
        const LogCapture log;
        twoFlows().save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        const QString path = QLatin1Char('"') + m_folder->path(inputFile()) + QLatin1Char('"');
        const QStringList expected{QStringLiteral("finding vek_input.xml----------"), path,
                                   QStringLiteral("parsing vek_hs.xml----------")};
        QCOMPARE(log.lines(), expected);
        QCOMPARE(context.flows.size(), size_t(2));
        QCOMPARE(context.flows.front().paths.front().schedtxwin, (SlotWindow{4, 0}));
        QCOMPARE(context.flows.front().paths.front().schedrxwin, (SlotWindow{9, 1}));
    }

    void fieldsOfAllRecordsAreRead()
    {
        const LogCapture log;
        twoFlows().save();
        PlanningContext context;
        readInputDocument(context);
        const HostInfo& host = context.hosts.front();
        QCOMPARE(host.name, QStringLiteral("A"));
        QCOMPARE(int(host.nodeID), 1);
        QCOMPARE(int(host.MTU), 1500);
        QCOMPARE(int(host.buffernum), 4);
        QCOMPARE(int(host.MAC[5]), 6);
        const SwitchInfo& info = context.switches.front();
        QCOMPARE(info.name, QStringLiteral("S1"));
        QCOMPARE(int(info.portnum), 8);
        QCOMPARE(int(info.MTU), 1500);
        QCOMPARE(int(info.MAC[5]), 6);
        QCOMPARE(context.links.size(), size_t(4));
        const LinkInfo& reverse = *std::next(context.links.begin());
        QCOMPARE(int(reverse.srcnode), 11);
        QCOMPARE(int(reverse.dstnode), 1);
        QCOMPARE(int(reverse.bandwidth), 1000);
        const VirtualLinkPath& path = context.virtualLinks.front().paths.front();
        QCOMPARE(int(path.talkerOutport), 1);
        QCOMPARE(int(path.talkerBuffernum), 4);
        QCOMPARE(int(path.bridges.front().inport), 1);
        QCOMPARE(int(path.bridges.front().outport), 2);
        QCOMPARE(int(path.bridges.front().buffernum), 4);
        QCOMPARE(int(path.listenerInport), 1);
        QCOMPARE(int(path.listenerBuffernum), 4);
    }

    void partsOfTheDocumentAnswerWithCodesOfTheirOwn()
    {
        const LogCapture log;
        InputText input = twoFlows();
        tinyxml2::XMLDocument document;
        const QByteArray text = input.document();
        QCOMPARE(document.Parse(text.constData()), tinyxml2::XML_SUCCESS);
        const tinyxml2::XMLElement* root = document.RootElement();
        PlanningContext context;
        QCOMPARE(readTopology(context, root->FirstChildElement("topology")), code::ok);
        QCOMPARE(readVirtualLinks(context, root->FirstChildElement("virtuallinks")), code::ok);
        QCOMPARE(readFlows(context, root->FirstChildElement("flows")), code::ok);
        QCOMPARE(context.flows.size(), size_t(2));
        for (VirtualLink& virtualLink : context.virtualLinks)
            virtualLink.paths.front().talkerNodeID = 99;
        QCOMPARE(readFlows(context, root->FirstChildElement("flows")), code::unreadable);
    }

    void flowOfAnotherTypeIsSkipped_data()
    {
        QTest::addColumn<QString>("type");
        QTest::newRow("rate constrained") << QStringLiteral("\"RC\"");
        QTest::newRow("lower case") << QStringLiteral("\"tt\"");
        QTest::newRow("without quotes") << QStringLiteral("TT");
        QTest::newRow("blank behind") << QStringLiteral("\"TT\" ");
        QTest::newRow("empty") << QString();
    }

    void flowOfAnotherTypeIsSkipped()
    {
        QFETCH(QString, type);
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        input.flow(1, QStringLiteral("0"), 9, QStringLiteral("?"), QString(), {}, type);
        input.flows += twoFlows().flows;
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.flows.size(), size_t(2));
        QCOMPARE(log.lines().size(), 3);
    }

    void flowThatDisagreesWithItsVirtualLinkEndsTheReading_data()
    {
        QTest::addColumn<QString>("talker");
        QTest::addColumn<QString>("listener");
        QTest::addColumn<int>("vlid");
        QTest::newRow("other talker") << "B"
                                      << "B" << 1;
        QTest::newRow("unknown talker") << "nobody"
                                        << "B" << 1;
        QTest::newRow("other listener") << "A"
                                        << "A" << 1;
        QTest::newRow("unknown virtual link") << "A"
                                              << "B" << 9;
    }

    void flowThatDisagreesWithItsVirtualLinkEndsTheReading()
    {
        QFETCH(QString, talker);
        QFETCH(QString, listener);
        QFETCH(int, vlid);
        const LogCapture log;
        const InputText good = twoFlows();
        InputText input = good;
        input.flow(3, QStringLiteral("1000"), vlid, talker, QStringLiteral("[0,1000]"),
                   {{listener, QStringLiteral("[0,1000]")}});
        input.flows += good.flows;
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.flows.size(), size_t(2));
        QCOMPARE(log.lines().last(),
                 QStringLiteral("flow info does not match the virtual link information"));
    }

    void windowsConvertToTheSlotsTheyCover_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("end");
        QTest::newRow("whole slots") << "[0,1000]" << 0 << 4;
        QTest::newRow("remainder 30 keeps the last slot") << "[100,1030]" << 1 << 5;
        QTest::newRow("remainder 29 loses it") << "[100,1029]" << 1 << 4;
        QTest::newRow("one slot") << "[200,400]" << 1 << 1;
        QTest::newRow("nothing") << "[0,0]" << 0 << -1;
        QTest::newRow("negative bounds") << "[-300,-100]" << -1 << -2;
        QTest::newRow("negative whole slot") << "[-400,-200]" << -2 << -2;
        QTest::newRow("largest bounds") << "[2147483647,2147483647]" << 10737419 << 10737418;
        QTest::newRow("smallest bounds") << "[-2147483648,-2147483648]" << -10737418 << -10737420;
        QTest::newRow("no brackets") << "0,1000" << 0 << -1;
        QTest::newRow("one number") << "[400]" << 2 << -1;
        QTest::newRow("surroundings are ignored") << "\"a[0,1000]b\"" << 0 << 4;
        QTest::newRow("letters read as 0") << "[x,1000]" << 0 << 4;
        QTest::newRow("beyond 32 bits reads as 0") << "[0,4294967296]" << 0 << -1;
    }

    void windowsConvertToTheSlotsTheyCover()
    {
        QFETCH(QString, text);
        const SlotWindow window = windowToSlots(parseSlotWindow(text));
        QTEST(window.start, "start");
        QTEST(window.end, "end");
    }

    void lastSwitchDecidesTheNetworksBufferNumber()
    {
        const LogCapture log;
        InputText input;
        input.switchNode(QStringLiteral("S1"), 1, 4).switchNode(QStringLiteral("S2"), 2, 8).save();
        PlanningContext context;
        readInputDocument(context);
        QCOMPARE(int(context.switchBufferNum), 8);
    }

    void listenerWithoutAPathIsNotForgivenForTheNextOne()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        const QString window = QStringLiteral("[0,1000]");
        input.flow(1, QStringLiteral("1000"), 1, QStringLiteral("A"), window,
                   {{QStringLiteral("A"), window}, {QStringLiteral("B"), window}});
        input.save();
        PlanningContext context;
        readInputDocument(context);
        QVERIFY(context.flows.empty());
    }

    void secondFileOfTheSameBaseNameIsReadToo()
    {
        const LogCapture log;
        twoFlows().save();
        writeFile(QStringLiteral("ResourceXML/vek_input.bak"), twoFlows().document());
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.hosts.size(), size_t(4));
        QCOMPARE(context.links.size(), size_t(8));
        QCOMPARE(context.flows.size(), size_t(4));
        QVERIFY(log.lines().at(1).contains(QStringLiteral("vek_input.bak")));
    }

    void linkBetweenUnknownNodesMatchesNothing()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        for (const char* name : {"A", "x", "B"})
            input.link(QString::fromLatin1(name), 7, QStringLiteral("y"), 8);
        input.virtualLink(2, {QStringLiteral("A,x,B"), QStringLiteral("A,x,z,B")});
        input.save();
        PlanningContext context;
        readInputDocument(context);
        const auto between = std::prev(context.links.end(), 3);
        QCOMPARE(int(between->srcnode), 0xFFFF);
        QCOMPARE(int(between->dstnode), 0xFFFF);
        for (const VirtualLinkPath& path : context.virtualLinks.back().paths) {
            QCOMPARE(int(path.talkerOutport), 0);
            QCOMPARE(int(path.listenerInport), 0);
            for (const BridgeHop& hop : path.bridges)
                QCOMPARE(int(hop.inport) + int(hop.outport), 0);
        }
        QCOMPARE(int(context.virtualLinks.front().paths.front().talkerOutport), 1);
    }

    void unknownNodeOnAPathTakesNothingFromTheNodeWithItsNumber()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        input.host(QStringLiteral("last"), 0xFFFF, 7).switchNode(QStringLiteral("S9"), 0xFFFF, 9);
        input.virtualLink(2, {QStringLiteral("x,y,z"), QStringLiteral("last,S9,last")});
        input.save();
        PlanningContext context;
        readInputDocument(context);
        const VirtualLinkPath& unknown = context.virtualLinks.back().paths.front();
        QCOMPARE(int(unknown.talkerNodeID), 0xFFFF);
        QCOMPARE(int(unknown.talkerBuffernum), 0);
        QCOMPARE(int(unknown.bridges.front().buffernum), 0);
        QCOMPARE(int(unknown.listenerBuffernum), 0);
        const VirtualLinkPath& known = context.virtualLinks.back().paths.back();
        QCOMPARE(int(known.talkerBuffernum), 7);
        QCOMPARE(int(known.bridges.front().buffernum), 9);
        QCOMPARE(int(known.listenerBuffernum), 7);
    }

    void firstVirtualLinkOfANumberIsTheFlows()
    {
        const LogCapture log;
        InputText input = twoFlows();
        input.virtualLink(1, {QStringLiteral("A,S1,S1,B")});
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.flows.front().paths.size(), size_t(1));
        QCOMPARE(context.flows.front().paths.front().bridges.size(), size_t(1));
    }

    void lastOfParallelLinksDecidesThePorts()
    {
        const LogCapture log;
        InputText input = lineNetwork(2, 4);
        input.link(QStringLiteral("S1"), 5, QStringLiteral("S2"), 6);
        input.save();
        PlanningContext context;
        readInputDocument(context);
        const VirtualLinkPath& path = context.virtualLinks.front().paths.front();
        QCOMPARE(int(path.bridges.front().outport), 5);
        QCOMPARE(int(path.bridges.back().inport), 6);
    }

    void neighboursWithoutLinkKeepPortZero()
    {
        const LogCapture log;
        InputText input = lineNetwork(2, 4);
        input.links.clear();
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        const VirtualLinkPath& path = context.virtualLinks.front().paths.front();
        QCOMPARE(int(path.talkerOutport), 0);
        QCOMPARE(int(path.bridges.front().outport), 0);
        QCOMPARE(int(path.listenerInport), 0);
    }

    void duplicateNumbersTakeTheLastHostAndTheFirstSwitch()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        input.host(QStringLiteral("A2"), 1, 7).switchNode(QStringLiteral("S9"), 11, 9);
        input.save();
        PlanningContext context;
        readInputDocument(context);
        const VirtualLinkPath& path = context.virtualLinks.front().paths.front();
        QCOMPARE(int(path.talkerBuffernum), 7);
        QCOMPARE(int(path.bridges.front().buffernum), 4);
    }

    void siblingsOfAnyNameAreTakenForTheSameKind()
    {
        const LogCapture log;
        InputText input = twoFlows();
        input.hosts.replace(input.hosts.lastIndexOf(QStringLiteral("<host>")), 6,
                            QStringLiteral("<guest>"));
        input.hosts.replace(input.hosts.lastIndexOf(QStringLiteral("</host>")), 7,
                            QStringLiteral("</guest>"));
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.hosts.size(), size_t(2));
    }

    void numbersThatDoNotFitReadAsZero()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        input.hosts.replace(QStringLiteral("<MTU>1500"), QStringLiteral("<MTU>65536"));
        input.switches.replace(QStringLiteral("<MTU>1500"), QStringLiteral("<MTU>-1"));
        input.save();
        PlanningContext context;
        readInputDocument(context);
        QCOMPARE(int(context.hosts.front().MTU), 0);
        QCOMPARE(int(context.switches.front().MTU), 0);
    }

    void addressPartsAreDecimalAndMissingOnesZero()
    {
        std::array<quint8, 6> bytes{9, 9, 9, 9, 9, 9};
        parseMacText(QStringLiteral("10:ff:255"), bytes);
        QCOMPARE(bytes, (std::array<quint8, 6>{10, 0, 255, 0, 0, 0}));
        parseMacText(QString(), bytes);
        QCOMPARE(bytes, (std::array<quint8, 6>{0, 0, 0, 0, 0, 0}));
        parseMacText(QStringLiteral("1:2:3:4:5:6:7"), bytes);
        QCOMPARE(int(bytes[5]), 6);
    }

    void shortDatapathEndsTheStage()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        input.virtualLink(2, {QStringLiteral("A,B")});
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::unreadable);
        QCOMPARE(log.lines().last(),
                 QStringLiteral("vek_input.xml: datapath \"A,B\" needs a talker, a switch and a "
                                "listener"));
    }

    void virtualLinkWithoutDatapathIsAccepted()
    {
        const LogCapture log;
        InputText input = twoFlows();
        input.virtualLink(2, {});
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QVERIFY(context.virtualLinks.back().paths.empty());
    }

    void missingElementEndsTheStage_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"topology",  "hosts",      "switches", "links",   "virtuallinks", "flows",
              "hostname",  "switchname", "nodeID",   "opts",    "MAC",          "MTU",
              "portnum",   "buffernum",  "srcnode",  "dstnode", "srcport",      "dstport",
              "bandwidth", "vlid",       "flowID",   "period",  "size",         "talker",
              "name",      "txwin",      "rxwin"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }

    // Renaming every element of one name is the same as taking them all out.
    void missingElementEndsTheStage()
    {
        QFETCH(QString, name);
        const LogCapture log;
        QString text = QString::fromUtf8(twoFlows().document());
        text.replace(QStringLiteral("<%1>").arg(name), QStringLiteral("<other>"));
        text.replace(QStringLiteral("</%1>").arg(name), QStringLiteral("</other>"));
        writeFile(inputFile(), text.toUtf8());
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::unreadable);
        QVERIFY2(log.lines().last().startsWith(
                     QStringLiteral("vek_input.xml: element \"%1\" is missing in").arg(name)),
                 qPrintable(log.lines().last()));
    }

    void missingListenersMeanNoListener()
    {
        const LogCapture log;
        QString text = QString::fromUtf8(twoFlows().document());
        text.replace(QStringLiteral("listeners>"), QStringLiteral("other>"));
        writeFile(inputFile(), text.toUtf8());
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.flows.size(), size_t(2));
        QCOMPARE(context.flows.front().paths.front().schedrxwin, (SlotWindow{0, 0}));
    }

    void missingElementOfAnotherTypesFlowDoesNotMatter()
    {
        const LogCapture log;
        InputText input = twoFlows();
        input.flows += QStringLiteral("<flow><type>\"BE\"</type></flow><flow/>");
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
        QCOMPARE(context.flows.size(), size_t(2));
    }

    void documentWithoutElementIsRefused()
    {
        const LogCapture log;
        writeFile(inputFile(), "<!-- nothing -->");
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::unreadable);
        writeFile(inputFile(), "");
        QCOMPARE(readInputDocument(context), code::unreadable);
    }

    void flowWithoutPeriodOrPathIsRefused_data()
    {
        QTest::addColumn<QString>("period");
        QTest::addColumn<int>("vlid");
        QTest::addColumn<QString>("reason");
        QTest::newRow("zero") << "0" << 1 << "flow 3 has period 0";
        QTest::newRow("no number") << "soon" << 1 << "flow 3 has period 0";
        QTest::newRow("too large") << "4294967296" << 1 << "flow 3 has period 0";
        QTest::newRow("no path") << "1000" << 9 << "flow 3 has no path: virtual link 9 has none";
    }

    void flowWithoutPeriodOrPathIsRefused()
    {
        QFETCH(QString, period);
        QFETCH(int, vlid);
        QFETCH(QString, reason);
        const LogCapture log;
        InputText input = twoFlows();
        input.flow(3, period, vlid, QStringLiteral("A"), QStringLiteral("[0,1000]"), {});
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::unreadable);
        QCOMPARE(log.lines().last(), QStringLiteral("vek_input.xml: ") + reason);
    }

    void disagreementIsFoundBeforeThePeriodIsLookedAt()
    {
        const LogCapture log;
        InputText input = twoFlows();
        input.flow(3, QStringLiteral("0"), 1, QStringLiteral("B"), QStringLiteral("[0,1000]"), {});
        input.save();
        PlanningContext context;
        QCOMPARE(readInputDocument(context), code::ok);
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_APPLESS_MAIN(InputDocumentTest)
#include "InputDocumentTest.moc"

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <list>
#include <memory>

class Studio;

/// A guided run through the studio: waits for each stage, acts like a user, keeps a picture.
///
/// Stages are done in order, each once its condition holds. A stage whose condition does not come
/// true in time ends the application with exit code 1.
class Tour : public QObject
{
    Q_OBJECT

public:
    /// Reads the examples from one folder; writes numbered pictures to the other, which must exist.
    Tour(const QString& examples, const QString& pictures, QObject* parent);
    ~Tour() override;

    /// Whether all stages were done.
    bool complete() const { return m_stages.empty(); }

private:
    struct Stage {
        QString name;
        std::function<bool()> isReached;
        std::function<void()> act; ///< may block until a later stage has answered
    };

    /// An example that cannot be planned, and the second flow with which it can.
    struct FailingExample {
        QString name;
        const char* vLineId;
        QStringList sendWindow;
        QStringList receiveWindow;
    };

    void addStartStages();
    void addDrawingStages();
    void addDrawnRunStages();
    void addExchangeStages();
    void openVirtualLinkDialogs();
    void openFlowDialogs();
    void addOpeningStages(const QString& example);
    void addExampleStages(const QString& example);
    void addPlanCheckStages();
    void openPlanCheckPage(int index);
    void goToFirstFinding();
    void addRefusalStages(const QString& name);
    void addSolvingStages(const QString& name);
    void addFailingExampleStages(const FailingExample& example);
    void mend(const FailingExample& example);
    void addRunStages(const QString& name);
    static void keepDocuments(const QString& name);
    void makeRoomForTheDrawing();
    void openScheduleDock();
    void showTable(const QString& table);
    void addOutcomeStage(const QString& name);
    void look();
    void takePicture(const QString& name);

    QTimer m_timer;
    std::unique_ptr<Studio> m_studio; ///< from the moment the main window is there
    std::list<Stage> m_stages;
    QString m_examples;
    QString m_pictures;
    int m_pictureCount = 0;
    int m_looksAtStage = 0;
};

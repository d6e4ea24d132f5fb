#include "topology/RecordNotifier.h"

RecordNotifier& RecordNotifier::instance()
{
    static RecordNotifier notifier;
    return notifier;
}

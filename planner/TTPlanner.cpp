#include "planner/TTPlanner.h"

namespace planner
{

void TTPlanner::reset()
{
    *this = TTPlanner();
}

} // namespace planner

#pragma once

#include <QCoreApplication>
#include <QVector>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>

// What the benches of the studio share: CPU time, which other programs on the machine disturb
// least, and the growth of a cost with the size.

/// Milliseconds of CPU time that the work takes with everything it leaves to the event loop.
inline double cpuTime(const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    work();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (int round = 0; round < 3; ++round) // layouts ask for others
        QCoreApplication::processEvents();
    return 1000.0 * double(std::clock() - start) / CLOCKS_PER_SEC;
}

/// A cost at several sizes: prints a row, and its growth exponent, the slope of the line through
/// all points on paper with logarithmic axes.
class Growth
{
public:
    void add(double size, double cost)
    {
        m_sizes.append(std::log(size));
        m_costs.append(cost);
    }

    double exponent() const
    {
        double sumX = 0;
        double sumY = 0;
        double sumXX = 0;
        double sumXY = 0;
        const int count = m_sizes.size();
        for (int i = 0; i < count; ++i) {
            const double y = std::log(m_costs.at(i));
            sumX += m_sizes.at(i);
            sumY += y;
            sumXX += m_sizes.at(i) * m_sizes.at(i);
            sumXY += m_sizes.at(i) * y;
        }
        return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
    }

    void print(const char* what) const
    {
        std::printf("%-28s", what);
        for (const double cost : m_costs)
            std::printf(" %9.1f", cost);
        std::printf("   exponent %5.2f\n", exponent());
    }

private:
    QVector<double> m_sizes;
    QVector<double> m_costs;
};

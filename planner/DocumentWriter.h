#pragma once

#include "planner/PlanningModel.h"

#include <tinyxml2.h>

#include <QString>

#include <cstdio>
#include <functional>
#include <memory>

namespace planner
{

/// Writes a document element by element, in the pretty form that XMLDocument::SaveFile() gives.
///
/// Elements are open from construction of an Element until its destruction.
class DocumentWriter
{
public:
    /// Opens the file below the current directory, making its folder when it is missing.
    ///
    /// A file that cannot be opened swallows everything that is written to it.
    DocumentWriter(const QString& folder, const QString& fileName);

    class Element
    {
    public:
        Element(DocumentWriter& writer, const char* name) : m_printer(writer.m_printer)
        {
            m_printer.OpenElement(name);
        }
        ~Element() { m_printer.CloseElement(); }
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;

    private:
        tinyxml2::XMLPrinter& m_printer;
    };

    void attribute(const char* name, const char* value);
    void leaf(const char* name, qint32 value);
    void leaf(const char* name, quint32 value);
    void leaf(const char* name, quint64 value);
    void leaf(const char* name, const QString& text);

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, CloseFile> m_file;
    tinyxml2::XMLPrinter m_printer;
};

/// Writes "flows" with one "flow" for each run of instances with the same flowID.
///
/// Instances with flowID 0 at the head of the list belong to no "flow" and are left out.
void writeFlows(DocumentWriter& writer, const std::list<TTStreamInstance>& instances,
                const std::function<void(const TTStreamInstance&)>& writeInstance);

} // namespace planner

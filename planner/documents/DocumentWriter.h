#pragma once

#include "planner/PlanningModel.h"

#include <tinyxml2.h>

#include <QByteArray>
#include <QString>

#include <array>
#include <charconv>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace planner
{

/// Writes a document element by element, in the pretty form that XMLDocument::SaveFile() gives.
///
/// Elements are open from construction of an Element until its destruction. Text is printed in
/// memory and written to the file in large pieces, since the printer writes each token by itself.
class DocumentWriter
{
public:
    /// Opens the file below the current directory, making its folder when it is missing.
    ///
    /// A file that cannot be opened, or a pipe that nobody reads, swallows everything that is
    /// written to it.
    DocumentWriter(const QString& folder, const QString& fileName);
    /// Keeps the whole document in memory, for bytes().
    DocumentWriter();
    ~DocumentWriter() = default;
    DocumentWriter(const DocumentWriter&) = delete;
    DocumentWriter& operator=(const DocumentWriter&) = delete;

    class Element
    {
    public:
        Element(DocumentWriter& writer, const char* name) : m_writer(writer)
        {
            m_writer.m_printer.OpenElement(name);
        }
        ~Element()
        {
            m_writer.m_printer.CloseElement();
            m_writer.writeFullPiece();
        }
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;

    private:
        DocumentWriter& m_writer;
    };

    void attribute(const char* name, const char* value);
    void leaf(const char* name, const std::string& text);
    /// Writes what is left, all elements being closed; false when the disk has not taken the whole
    /// document. A file that may not be written to at all is no failure here.
    bool finish();
    /// The document so far; of one without a file, or before the first piece went to it.
    QByteArray bytes() const;
    /// An integer of any width and sign, in decimal.
    template <typename Number>
    void leaf(const char* name, Number value)
    {
        std::array<char, 24> text{}; // holds every 64-bit number
        std::to_chars(text.data(), text.data() + text.size(), value);
        const Element element(*this, name);
        m_printer.PushText(text.data());
    }

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void writeFullPiece();
    void writePiece();

    const bool m_inMemory;
    bool m_isWhole = true;
    std::unique_ptr<std::FILE, CloseFile> m_file;
    tinyxml2::XMLPrinter m_printer;
};

/// Writes "flows" with one "flow" for each run of instances with the same flowID.
///
/// Instances with flowID 0 at the head of the list belong to no "flow" and are left out.
void writeFlows(DocumentWriter& writer, const std::list<TTStreamInstance>& instances,
                const std::function<void(const TTStreamInstance&)>& writeInstance);

} // namespace planner

#include "imaging/pdf/PdfWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "imaging/pdf/Flate.h"
#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::imaging {

namespace {

constexpr double largestPage = 14400; // points, in units of one
constexpr std::string_view endOfObject = "\nendobj\n";

} // namespace

std::string PdfNumber(double value) {
    if (!std::isfinite(value)) return "0";
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::clamp(value, -1e9, 1e9),
                                   std::chars_format::fixed, 4)
                         .ptr;
    std::string text(buffer, end);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string PdfReference(int number) { return std::to_string(number) + " 0 R"; }

std::string PdfHexText(std::string_view utf8) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "<FEFF";
    for (const char16_t unit : platform::ToUtf16(utf8))
        for (int shift = 12; shift >= 0; shift -= 4) text += digits[(unit >> shift) & 15];
    return text + ">";
}

PdfWriter::PdfWriter(ByteSink sink) : lclSink(std::move(sink)) {
    Put("%PDF-1.6\n%\xE2\xE3\xCF\xD3\n");
    lclPageList = Reserve();
}

void PdfWriter::Put(std::string_view bytes) {
    lclSink(bytes);
    lclWritten += bytes.size();
}

int PdfWriter::Reserve() {
    lclPlaces.push_back(0);
    return static_cast<int>(lclPlaces.size());
}

void PdfWriter::Begin(int number) {
    lclPlaces[number - 1] = lclWritten;
    Put(std::to_string(number) + " 0 obj\n");
}

void PdfWriter::Object(int number, std::string_view body) {
    Begin(number);
    Put(body);
    Put(endOfObject);
}

int PdfWriter::Object(std::string_view body) {
    const int number = Reserve();
    Object(number, body);
    return number;
}

void PdfWriter::Stream(int number, std::string_view entries, std::string_view data) {
    Begin(number);
    std::string head = "<< ";
    head.append(entries).append(" /Length ").append(std::to_string(data.size()));
    Put(head + " >>\nstream\n");
    Put(data);
    Put("\nendstream");
    Put(endOfObject);
}

int PdfWriter::Stream(std::string_view entries, std::string_view data) {
    const int number = Reserve();
    Stream(number, entries, data);
    return number;
}

void PdfWriter::Page(double width, double height, std::string_view resources,
                     std::string_view content) {
    const double unit = std::max({1.0, width / largestPage, height / largestPage});
    std::string whole(content);
    if (unit > 1) whole = PdfNumber(1 / unit) + " 0 0 " + PdfNumber(1 / unit) + " 0 0 cm\n" + whole;
    constexpr std::size_t shortContent = 200; // not worth packing
    const int stream = whole.size() <= shortContent
                           ? Stream("", whole)
                           : Stream("/Filter /FlateDecode", Deflated(whole));
    std::string page = "<< /Type /Page /Parent " + PdfReference(lclPageList) + " /MediaBox [0 0 " +
                       PdfNumber(width / unit) + " " + PdfNumber(height / unit) + "]";
    if (unit > 1) page += " /UserUnit " + PdfNumber(unit);
    page.append(" /Resources << ").append(resources).append(" >> /Contents ");
    lclPages.push_back(Object(page + PdfReference(stream) + " >>"));
}

void PdfWriter::Finish(std::string_view title) {
    if (lclPages.empty())
        throw platform::Error(platform::errors::invalidArgument, "A PDF file needs a page");
    std::string kids;
    for (const int page : lclPages) kids += PdfReference(page) + "\n";
    Object(lclPageList, "<< /Type /Pages /Count " + std::to_string(lclPages.size()) + " /Kids [\n" +
                            kids + "] >>");
    const int catalog = Object("<< /Type /Catalog /Pages " + PdfReference(lclPageList) + " >>");
    const int info = Object("<< /Producer (Kavidex) /Title " + PdfHexText(title) + " >>");

    const std::uint64_t table = lclWritten;
    const std::string size = std::to_string(lclPlaces.size() + 1);
    std::string rows = "xref\n0 " + size + "\n0000000000 65535 f \n";
    for (const std::uint64_t place : lclPlaces) {
        const std::string digits = std::to_string(place);
        rows.append(10 - std::min<std::size_t>(10, digits.size()), '0').append(digits);
        rows += place == 0 ? " 65535 f \n" : " 00000 n \n";
    }
    Put(rows);
    Put("trailer\n<< /Size " + size + " /Root " + PdfReference(catalog) + " /Info " +
        PdfReference(info) + " >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n");
}

} // namespace kavidex::imaging

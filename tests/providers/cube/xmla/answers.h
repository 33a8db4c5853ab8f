// Answers of a cube server, made small.
#pragma once

#include <string>

namespace vok::xmla::test {

inline std::string Envelope(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SOAP-ENV:Envelope "
         "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">\n<SOAP-ENV:Body>\n" +
         body + "\n</SOAP-ENV:Body>\n</SOAP-ENV:Envelope>\n";
}

inline std::string Result(const std::string& content) {
  return Envelope(
      "<cxmla:Response xmlns:cxmla=\"urn:schemas-microsoft-com:xml-analysis\"><cxmla:return>"
      "<root xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><xsd:schema><xsd:element name=\"Axes\"/>"
      "</xsd:schema>" +
      content + "</root></cxmla:return></cxmla:Response>");
}

inline std::string Fault(const std::string& text, const std::string& detail) {
  return Envelope("<SOAP-ENV:Fault><faultcode>Client.1</faultcode><faultstring>" + text +
                  "</faultstring><detail><e:error xmlns:e=\"urn:e\"><code>1</code><desc>" + detail +
                  "</desc></e:error></detail></SOAP-ENV:Fault>");
}

inline std::string Tuple(const std::string& unique_name, const std::string& caption) {
  return "<Tuple><Member Hierarchy=\"QeL\"><UName>" + unique_name + "</UName><Caption>" + caption +
         "</Caption><LName>[QeL].[Item]</LName><LNum>1</LNum></Member></Tuple>\n";
}

/// The content of a cellset of two columns and two rows; `cells` is what stands in CellData.
inline std::string TwoByTwoContent(const std::string& cells) {
  return "<OlapInfo><AxesInfo><AxisInfo name=\"Axis0\"><HierarchyInfo name=\"Date\"/></AxisInfo>"
         "<AxisInfo name=\"Axis1\"><HierarchyInfo name=\"QeL\"/></AxisInfo></AxesInfo>"
         "<CellInfo><Value name=\"VALUE\"/></CellInfo></OlapInfo>"
         "<Axes><Axis name=\"Axis0\"><Tuples>" +
         Tuple("[Date].[Q0]", "Q0") + Tuple("[Date].[m0]", "m0") +
         "</Tuples></Axis><Axis name=\"Axis1\"><Tuples>" + Tuple("[QeL].[All]", "All") +
         Tuple("[QeL].[1&#9;a [x]] &#38; b]", "1&#9;a [x] &#38; b") +
         "</Tuples></Axis><Axis name=\"SlicerAxis\"><Tuples><Tuple/></Tuples></Axis></Axes>"
         "<CellData>" +
         cells + "</CellData>";
}

inline std::string TwoByTwo(const std::string& cells, const std::string& behind = "") {
  return Result(TwoByTwoContent(cells) + behind);
}

}  // namespace vok::xmla::test

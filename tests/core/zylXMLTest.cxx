// XML files with appended data must read whatever the system's expat does with its events, and
// parsers that are not the toolkit's keep the behavior they were made with.
#include <vtkCellData.h>
#include <vtkCompositeDataIterator.h>
#include <vtkDataSetTriangleFilter.h>
#include <vtkDoubleArray.h>
#include <vtkGeometryFilter.h>
#include <vtkImageData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLUnstructuredGridReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <expat.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <string>

namespace {
vtkSmartPointer<vtkImageData> Lattice()
{
  auto lattice = vtkSmartPointer<vtkImageData>::New();
  lattice->SetDimensions(12, 11, 10);
  vtkNew<vtkDoubleArray> height;
  height->SetName("height");
  for (vtkIdType i = 0; i < lattice->GetNumberOfPoints(); ++i)
  {
    height->InsertNextValue(lattice->GetPoint(i)[2] + 0.001 * static_cast<double>(i));
  }
  lattice->GetPointData()->AddArray(height);
  return lattice;
}

template <class Writer, class Reader, class Data>
void ExpectComesBack(Data* data, const std::string& extension, bool raw)
{
  const std::string file = testing::TempDir() + "zylXMLTest" + extension;
  vtkNew<Writer> writer;
  writer->SetFileName(file.c_str());
  writer->SetInputData(data);
  writer->SetDataModeToAppended();
  writer->SetEncodeAppendedData(!raw);
  if (raw)
  {
    writer->SetCompressorTypeToNone();
  }
  ASSERT_EQ(writer->Write(), 1);

  vtkNew<Reader> reader;
  reader->SetFileName(file.c_str());
  reader->Update();
  Data* back = reader->GetOutput();
  EXPECT_EQ(back->GetNumberOfCells(), data->GetNumberOfCells());
  ASSERT_EQ(back->GetNumberOfPoints(), data->GetNumberOfPoints());
  vtkDataArray* expected = data->GetPointData()->GetArray("height");
  vtkDataArray* actual = back->GetPointData()->GetArray("height");
  ASSERT_NE(actual, nullptr);
  for (vtkIdType i = 0; i < expected->GetNumberOfTuples(); ++i)
  {
    ASSERT_EQ(actual->GetTuple1(i), expected->GetTuple1(i)) << "point " << i;
  }
  std::remove(file.c_str());
}

void XMLCALL CountStart(void* count, const XML_Char*, const XML_Char**)
{
  ++*static_cast<int*>(count);
}
} // namespace

//------------------------------------------------------------------------------
TEST(zylXML, FilesWithAppendedDataComeBack)
{
  vtkNew<vtkDataSetTriangleFilter> tetrahedra;
  tetrahedra->SetInputData(Lattice());
  tetrahedra->Update();
  ASSERT_GT(tetrahedra->GetOutput()->GetNumberOfCells(), 4000);
  vtkNew<vtkGeometryFilter> faces;
  faces->SetInputConnection(tetrahedra->GetOutputPort());
  faces->Update();
  ASSERT_GT(faces->GetOutput()->GetNumberOfCells(), 1000);
  for (bool raw : { true, false })
  {
    ExpectComesBack<vtkXMLUnstructuredGridWriter, vtkXMLUnstructuredGridReader>(
      tetrahedra->GetOutput(), ".vtu", raw);
    ExpectComesBack<vtkXMLPolyDataWriter, vtkXMLPolyDataReader>(faces->GetOutput(), ".vtp", raw);
  }
}

//------------------------------------------------------------------------------
TEST(zylXML, OtherParsersKeepTheirDeferral)
{
  if (!dlsym(RTLD_DEFAULT, "XML_SetReparseDeferralEnabled"))
  {
    GTEST_SKIP() << "this expat has no reparse deferral";
  }
  XML_Parser parser = XML_ParserCreate(nullptr);
  ASSERT_NE(parser, nullptr);
  int started = 0;
  XML_SetUserData(parser, &started);
  XML_SetStartElementHandler(parser, CountStart);
  // The tag is complete with the second piece; a deferring parser waits for more before it looks
  // again.
  EXPECT_EQ(XML_Parse(parser, "<document", 9, 0), XML_STATUS_OK);
  EXPECT_EQ(XML_Parse(parser, ">", 1, 0), XML_STATUS_OK);
  EXPECT_EQ(started, 0);
  EXPECT_EQ(XML_Parse(parser, "</document>", 11, 1), XML_STATUS_OK);
  EXPECT_EQ(started, 1);
  XML_ParserFree(parser);
}

//------------------------------------------------------------------------------
TEST(zylXML, ManyBlocksAreComplete)
{
  const char* folder = std::getenv("ZYL_TEST_DATA");
  const std::string file = std::string(folder ? folder : "") + "/many_blocks/many_blocks.vtm";
  if (!folder || !std::ifstream(file))
  {
    GTEST_SKIP() << "ZYL_TEST_DATA names no folder with many_blocks";
  }
  vtkNew<vtkXMLMultiBlockDataReader> reader;
  reader->SetFileName(file.c_str());
  reader->Update();
  EXPECT_EQ(reader->GetOutput()->GetNumberOfPoints(), 5808);
  EXPECT_EQ(reader->GetOutput()->GetNumberOfCells(), 11352);
}

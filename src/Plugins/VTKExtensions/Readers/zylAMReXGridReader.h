/**
 * @class zylAMReXGridReader
 * @brief The toolkit's AMReX reader, reading each box once with all its arrays.
 *
 * The toolkit's reader opens a file and parses the head of the box for every array of every box.
 * Here the boxes that this process needs are read in the order in which they lie in the files, the
 * values going straight into the arrays; the toolkit's loop then only hands them out. Grids, arrays
 * and their order are the toolkit's. What the layout does not cover (further sets of variables,
 * foreign byte orders) the toolkit reads itself. Private to the plugin.
 */
#ifndef zylAMReXGridReader_h
#define zylAMReXGridReader_h

#include "zylAMReXPlotfile.h"

#include <string>
#include <unordered_map>
#include <vector>

#include <vtkAMReXGridReader.h>
#include <vtkSmartPointer.h>

class vtkDataArray;

class ZYL_PRIVATE zylAMReXGridReader : public vtkAMReXGridReader
{
public:
  static zylAMReXGridReader* New();
  vtkTypeMacro(zylAMReXGridReader, vtkAMReXGridReader);

  /// What zylCheckAMReXPlotfile() found in the plotfile that is read. Empty: as the toolkit reads.
  void SetLayout(zylAMReXLayout layout);

protected:
  zylAMReXGridReader() = default;
  ~zylAMReXGridReader() override = default;

  int RequestData(
    vtkInformation* request, vtkInformationVector** inputs, vtkInformationVector* outputs) override;
  void GetAMRGridData(const int block, vtkUniformGrid* grid, const char* field) override;

private:
  zylAMReXGridReader(const zylAMReXGridReader&) = delete;
  void operator=(const zylAMReXGridReader&) = delete;

  // An array of the output and the variables that are its components.
  struct Field
  {
    std::string Name;
    std::vector<std::size_t> Variables;
  };
  using Arrays = std::vector<vtkSmartPointer<vtkDataArray>>; // one for each of the fields

  std::vector<Field> FindFields();
  std::vector<int> FindBlocks(vtkInformation* output);
  void ReadBoxes(std::vector<int> blocks);
  bool ReadBox(int file, const zylAMReXFab& fab, Arrays& arrays) const;

  zylAMReXLayout Layout;
  std::vector<Field> Fields;
  std::unordered_map<int, Arrays> Read; // by block, until it is handed out
};

#endif

/**
 * @class zylAMReXGridReader
 * @brief The toolkit's AMReX reader, reading each box once with all its arrays.
 *
 * The toolkit's reader opens a file and parses the head of the box for every array of every box.
 * Here the boxes that this process needs are read in the order in which they lie in the files, the
 * values going straight into the arrays; the toolkit's loop then only hands them out. Grids, arrays
 * and their order are the toolkit's. What the layout does not cover (further sets of variables,
 * foreign byte orders) the toolkit reads itself.
 *
 * With DeferValues() most values are not even read, but left for the filter behind to ask for. The
 * grids are then good for that filter only, while the reader lives. Private to the plugin.
 */
#ifndef zylAMReXGridReader_h
#define zylAMReXGridReader_h

#include "zylAMReXPlotfile.h"
#include "zylDeferredValues.h"

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include <vtkAMReXGridReader.h>
#include <vtkSmartPointer.h>

class vtkDataArray;
class vtkImageData;

class ZYL_PRIVATE zylAMReXGridReader
  : public vtkAMReXGridReader
  , public zylDeferredValues
{
public:
  static zylAMReXGridReader* New();
  vtkTypeMacro(zylAMReXGridReader, vtkAMReXGridReader);

  /// What zylCheckAMReXPlotfile() found in the plotfile that is read. Empty: as the toolkit reads.
  void SetLayout(zylAMReXLayout layout);

  /// Read only the arrays of these names; leave the values of all others to be asked for.
  void DeferValues(std::set<std::string> except);

  ///@{
  /// The values that were left out.
  std::unique_ptr<Buffer> MakeBuffer() const override;
  bool Read(vtkImageData* image, Buffer& buffer) const override;
  ///@}

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
    bool Deferred;
  };
  using Arrays = std::vector<vtkSmartPointer<vtkDataArray>>; // one for each of the fields
  class BoxBuffer;

  std::vector<Field> FindFields();
  std::vector<int> FindIndices(vtkInformation* output);
  void ReadBoxes(const std::vector<int>& indices);
  bool ReadBox(int file, const zylAMReXFab& fab, Arrays& arrays) const;
  bool ReadFields(int file, const zylAMReXFab& fab, const std::vector<void*>& values) const;

  zylAMReXLayout Layout;
  bool Deferring = false;
  std::set<std::string> NotDeferred;
  std::vector<Field> Fields;
  std::unordered_map<int, Arrays> BoxArrays;     // by block, until they are handed out
  std::unordered_map<vtkImageData*, int> Blocks; // that have deferred values
};

#endif

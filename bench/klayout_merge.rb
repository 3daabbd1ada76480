# Reads a stream, flattens its top cell and merges the polygons of each layer in batch mode,
# for comparison with a translation under -H.
#   klayout -b -r klayout_merge.rb -rd input=stream.gds
layout = RBA::Layout.new
layout.read($input)
top = layout.top_cell
top.flatten(true)
polygons = 0
layout.layer_indexes.each do |li|
  region = RBA::Region.new(top.shapes(li))
  region.merge
  polygons += region.size
end
puts "polygons #{polygons}"

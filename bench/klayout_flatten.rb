# Reads a stream and flattens its top cell, or the cell named, in batch mode, for
# comparison with a translation.
#   klayout -b -r klayout_flatten.rb -rd input=stream.gds [-rd cell=name]
layout = RBA::Layout.new
layout.read($input)
top = defined?($cell) && $cell ? layout.cell($cell) : layout.top_cell
raise "no cell #{$cell} in #{$input}" unless top
top.flatten(true)
shapes = 0
layout.layer_indexes.each { |li| shapes += top.shapes(li).size }
puts "shapes #{shapes}"

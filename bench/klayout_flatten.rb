# Reads a stream and flattens its top cell in batch mode, for comparison with a translation.
#   klayout -b -r klayout_flatten.rb -rd input=stream.gds
layout = RBA::Layout.new
layout.read($input)
top = layout.top_cell
top.flatten(true)
shapes = 0
layout.layer_indexes.each { |li| shapes += top.shapes(li).size }
puts "shapes #{shapes}"
